#pragma once

#include "tool/outcome.h"

#include <QStringList>

/// In which fields two backups differ, apart from those that are @p ignored.
///
/// Refuses the comparison if either of them would be refused by a restore.
Outcome compare(const QString &firstPath, const QString &secondPath, const QStringList &ignored);
