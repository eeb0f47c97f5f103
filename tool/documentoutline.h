#pragma once

#include <QByteArray>
#include <QString>

/// Finds its way in an XML document that the document guard has admitted.
///
/// Elements are named by their path below the document's root, "ZORBackupInfo/creationDate" for
/// example; the root's path is empty. Line and column are those of Qt's XML reader.
namespace DocumentOutline {

/// The path of the innermost element that is open at the given position, its end tag included. What
/// lies deeper than any field of a backup is cut off.
QString elementAt(const QByteArray &document, qint64 line, qint64 column);

/// The path of the first section or field of a backup that is nowhere in the @p document. Empty if
/// there is none, and also if the document is not well-formed or is something else altogether.
QString missingElement(const QByteArray &document);

} // namespace DocumentOutline
