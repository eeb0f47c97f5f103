#pragma once

#include "tests/sweep/operation.h"

#include <QStringList>

/// The password of a configuration that an operation locks.
inline constexpr char newPassword[] = "Zz-9_top";

/// Everything that matters about an operation when it is over.
struct Outcome
{
    QStringList transcript; ///< what passed the channel and was on the screen, in order
    ControllerState state;
    Files files;
    int waitCursors = 0; ///< those that were left on
};

/// The first thing in which @p actual is not as @p expected, for people; empty if there is none.
/// Backup documents may have been written at different times, passwords salted differently.
QString difference(const Outcome &actual, const Outcome &expected);
