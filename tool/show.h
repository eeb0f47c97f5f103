#pragma once

#include "tool/outcome.h"

struct ToolArguments;

/// What the backups hold that a restore would accept, field by field.
Outcome show(const ToolArguments &arguments);
