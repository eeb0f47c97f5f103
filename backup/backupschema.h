#pragma once

class QByteArray;
class QString;
struct DocumentProblem;

/// The schema of the backup document, which the plug-in carries in its resources.
namespace BackupSchema {

/// What a file turned out to be.
enum class Verdict {
    SchemaUnusable, ///< the schema itself cannot be loaded: a defect of the plug-in
    NoBackup,       ///< any other file, a damaged backup, or none at all
    Backup          ///< a backup document
};

/// The schema as it was built into the plug-in.
QByteArray embedded();

/// Tells whether the file at @p path is a backup document, whatever its name.
///
/// Opens nothing but that file, whatever the document names as its schema, and prints nothing. A
/// document with a document type declaration is no backup, nor is one that costs more than any
/// backup would to be read, see DocumentGuard. Takes time and memory in proportion to the size of
/// the file. To be called in the GUI thread only, as the schema is kept from one call to the next.
/// @param path     the file
/// @param problem  if given, receives the first reason why a document is no backup, which lies at
///                 an element's start tag or where the document is not well-formed
Verdict validate(const QString &path, DocumentProblem *problem = nullptr);
/// The same with another schema, which is not kept: may be called in any thread.
Verdict validate(const QString &path, const QByteArray &schema, DocumentProblem *problem = nullptr);

} // namespace BackupSchema
