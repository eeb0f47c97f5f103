#pragma once

class QByteArray;
class QString;

/// What a file that is no backup probably is, in a sentence; empty if it is most likely a backup
/// all the same, so that there is nothing to add to the reason why it is refused.
/// @param document   as the document guard admits it
/// @param beginning  the file's first bytes as they are on the disk
/// @param name       of the file, without its folder
QString likelyKind(const QByteArray &document, const QByteArray &beginning, const QString &name);
