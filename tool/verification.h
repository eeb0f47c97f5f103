#pragma once

#include "tool/outcome.h"

struct ToolArguments;

/// Whether a restore would accept the backups and, if not, why; and onto which controllers.
///
/// Asked for the backups of one controller or of one age, it tells whether there is a good one.
Outcome verify(const ToolArguments &arguments);
