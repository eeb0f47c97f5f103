#pragma once

#include "tool/outcome.h"

/// What is said about one backup.
namespace Judgement {

/// Whether a restore would accept the file and, if not, why.
Outcome verify(const QString &path);

/// What the backup holds, if a restore would accept it.
Outcome show(const QString &path);

} // namespace Judgement
