#pragma once

#include "backup/fullbackup.h"
#include "hostapi/backendversions.h"

#include <QByteArray>

/// What is measured with: the same in every run.
namespace SampleData {

/// The versions of a controller that can do everything.
BackendVersions versions();

/// Bytes without any pattern.
QByteArray bytes(int size);

/// A record in which every field is filled, with @p size bytes of configuration data.
void fill(FullBackup *backup, int size);

} // namespace SampleData
