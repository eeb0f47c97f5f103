#pragma once

#include "tool/outcome.h"

struct ToolArguments;

/// The backups in a table, the newest first and what is refused at the end.
Outcome list(const ToolArguments &arguments);
