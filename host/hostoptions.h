#pragma once

#include "hostapi/version.h"
#include "network/hostport.h"

#include <QString>
#include <QStringList>

#include <optional>

/// What the command line asks for.
struct HostOptions
{
    bool isObserver = false;            ///< modules may only look; they offer no actions
    Version interfaceVersion{1, 27, 0}; ///< the controller's command interface
    Version ptVersion{4, 2, 0};         ///< the controller's tracking software
    Version ctVersion{4, 1, 0};         ///< the controller's firmware
    QString systemModel; ///< what modules are told; empty for the controller's own description
    QString hostVersion = QStringLiteral("v4.12.3"); ///< what message receivers are told
    int latencyMs = 0;                               ///< how long the controller takes to answer
    QStringList failureRules; ///< faults of the controller, in the simulator's notation
    /// The controller in the network to connect to; nothing for a simulated one in the host.
    std::optional<HostPort> controller;
    QString stateFile;     ///< where the controller's state is kept; empty to forget it
    bool isDark = false;   ///< light text on a dark ground, whatever the desktop's colours
    int fontSize = 0;      ///< in points; 0 for the desktop's
    QString pluginFile;    ///< the module to load
    QString tourDirectory; ///< where the tour leaves its pictures; empty to run interactively
};

/// Reads the command line, its first element being the program's name.
///
/// "--help" and "--version" print their text and end the program with exit code 0.
/// @return nothing if the command line is wrong; @p problem then holds one line that says why
std::optional<HostOptions> parseHostOptions(const QStringList &arguments, QString *problem);
