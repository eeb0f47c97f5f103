#pragma once

#include <QtGlobal>

/// The memory of this process, in bytes. Ends the program where the system does not tell.
namespace ProcessMemory {

/// What is in memory now.
qint64 now();

/// The most that was in memory since the process began or the peak was forgotten.
qint64 peak();

/// Begins to look for the peak anew.
void forgetPeak();

} // namespace ProcessMemory
