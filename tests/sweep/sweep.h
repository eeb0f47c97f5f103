#pragma once

#include "tests/sweep/operation.h"

#include <QMetaType>

/// How something goes wrong at one command after the other of an operation.
enum class Misfortune {
    Failure,    ///< the command does not reach the controller
    LostAnswer, ///< the controller carries the command out, but its answer is lost
    Death,      ///< the controller does not answer from there on
    WrongAnswer ///< the answer is another one than it should be
};
Q_DECLARE_METATYPE(Misfortune)

namespace Sweep {

/// Adds a row for each misfortune to a test's data.
void addRows();

/// The same for a variant of another operation: only ./dev sweep lets more than failures befall
/// this one, too.
void addRowsOfVariant();

/// Carries out @p operation with the misfortune of the current row at its first command, at its
/// second and so on until there is none to befall any more, and compares each time what came of it
/// with what has to be. Fails the test at the first difference.
///
/// Reading the list, with which operations end, is an operation of its own: only ./dev sweep lets
/// its answers be wrong after the others, too. Only it tries all wrong answers to each command.
///
/// Afterwards the plug-in has to list again what the controller holds. Where answers were wrong, it
/// also has to do the whole operation as if nothing had been.
void run(const Operation &operation);

/// Says how many faults have been met so far by all operations of this program.
void sayTotal();

} // namespace Sweep
