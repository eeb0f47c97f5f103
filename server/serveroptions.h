#pragma once

#include <QHostAddress>
#include <QString>
#include <QStringList>

#include <optional>

/// What the command line asks for.
struct ServerOptions
{
    QHostAddress address{QHostAddress::LocalHost}; ///< where to serve
    quint16 port = 4711;                           ///< 0 for any free one
    QString stateFile;                ///< where the controller's state is kept; empty to forget it
    int latencyMs = 0;                ///< how long the controller takes to answer
    QStringList failureRules;         ///< faults of the controller, in the simulator's notation
    int idleLimitSeconds = 24 * 3600; ///< how long a client may send nothing
};

/// Reads the command line, its first element being the program's name.
///
/// "--help" and "--version" print their text and end the program with exit code 0.
/// @return nothing if the command line is wrong; @p problem then holds one line that says why
std::optional<ServerOptions> parseServerOptions(const QStringList &arguments, QString *problem);
