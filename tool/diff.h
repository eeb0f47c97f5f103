#pragma once

#include "tool/outcome.h"

struct ToolArguments;

/// In which fields backups differ, apart from those that are to be ignored: of two files, of the
/// newest ones of two controllers, or of the newest ones of each controller in two folders.
///
/// Refuses to compare what a restore would refuse.
Outcome diff(const ToolArguments &arguments);
