#pragma once

#include "tool/outcome.h"

#include <QStringList>

/// Which controllers have changed from the newest of their backups in the first folder to the
/// newest in the second. That the two were made at different times is no difference.
Outcome diffOfFolders(const QString &first, const QString &second, const QStringList &ignored);
