#pragma once

#include <QString>

class QAbstractItemModel;

/// A log as text for other programs: a line for each row, its cells separated by tabs.
namespace LogText {

QString line(const QAbstractItemModel &log, int row);

/// Writes the column titles and all rows to a file, in UTF-8. An older file is replaced when all is
/// written.
/// @return whether it succeeded; if not, @p problem says why
bool save(const QAbstractItemModel &log, const QString &path, QString *problem);

} // namespace LogText
