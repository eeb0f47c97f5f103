#pragma once

#include "tool/outcome.h"

struct ToolArguments;

/// Writes the configuration data of a backup as a file that the load dialog opens.
///
/// Under its name there is the whole file afterwards, or what was there before. Refuses a backup
/// that a restore would refuse, and one without configurations.
Outcome extract(const ToolArguments &arguments);
