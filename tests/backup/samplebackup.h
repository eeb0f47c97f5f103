#pragma once

#include "backup/fullbackup.h"
#include "hostapi/backendversions.h"

#include <QByteArray>
#include <QString>

/// A record in which every field is filled, with its document.
namespace SampleBackup {

/// The versions of the controller that the record was made of.
BackendVersions versions();

/// Fills every field of @p backup.
void fill(FullBackup *backup);

/// A filled record that no controller stands behind.
class Filled : public FullBackup
{
public:
    Filled();
};

/// What writeToFile() makes of the filled record, but for the time of writing, which is
/// "2024-03-05T14:07:09".
QByteArray document();

/// The document with the first @p before replaced by @p after, which must be there.
QByteArray documentWith(const QByteArray &before, const QByteArray &after);

/// Every field of @p backup, one line each, for comparison.
QString describe(const FullBackup &backup);

/// The description of the filled record.
QString description();

/// What is wrong with a document, and where, on one line.
QString describe(const DocumentProblem &problem);

/// Makes a file in the folder for the test's files and returns its path.
QString makeFile(const QString &folder, const QByteArray &content);

/// The content of the file at @p path.
QByteArray contentOf(const QString &path);

} // namespace SampleBackup
