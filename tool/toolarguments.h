#pragma once

#include "tool/fitness.h"

#include <QString>
#include <QStringList>

#include <optional>

/// What the command line asks for.
struct ToolArguments
{
    QString command;              ///< one of ToolCommands::all()
    QStringList paths;            ///< as many as the command wants
    QStringList ignored;          ///< fields that diff leaves out
    QStringList controllers;      ///< by host name; all if empty
    std::optional<qint64> maxAge; ///< in seconds
    QString maxAgeText;           ///< the same as it was given
    ControllerTraits traits;      ///< that a backup has to fit
    bool isJson = false;          ///< for programs instead of people
    bool isForced = false;        ///< whether a file may be replaced
};

/// Reads the command line, its first element being the program's name.
///
/// "--help" and "--version" print their text and end the program with exit code 0.
/// @return nothing if the command line is wrong; @p problem then holds one line that says why
std::optional<ToolArguments> parseToolArguments(const QStringList &arguments, QString *problem);
