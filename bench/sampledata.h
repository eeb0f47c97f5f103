#pragma once

#include "backup/fullbackup.h"
#include "hostapi/backendversions.h"

#include <QByteArray>

/// What is measured with: the same in every run.
namespace SampleData {

constexpr int mebibyte = 1024 * 1024;

/// The versions of a controller that can do everything.
BackendVersions versions();

/// A mebibyte without any pattern, again and again, cut to @p size.
QByteArray bytes(int size);

/// A record in which every field is filled, with @p size bytes of configuration data.
void fill(FullBackup *backup, int size);

} // namespace SampleData
