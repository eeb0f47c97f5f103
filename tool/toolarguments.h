#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// What the command line asks for.
struct ToolArguments
{
    /// What is to be done with the files.
    enum class Command { Verify, Show, Diff };

    Command command = Command::Verify; ///< its first argument
    QStringList files;                 ///< two for Diff, else one
    QStringList ignored;               ///< fields that Diff leaves out
    bool isJson = false;               ///< for programs instead of people
};

/// Reads the command line, its first element being the program's name.
///
/// "--help" and "--version" print their text and end the program with exit code 0.
/// @return nothing if the command line is wrong; @p problem then holds one line that says why
std::optional<ToolArguments> parseToolArguments(const QStringList &arguments, QString *problem);
