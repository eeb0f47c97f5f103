#pragma once

#include <QByteArray>

#include <optional>

class MarkupMeter;
class QFile;

/// Decides which XML documents may be given to a parser.
///
/// Qt's stream reader takes time that grows with the square of the attributes in a tag and of the
/// namespaces in scope, and what is built upon it takes memory many times the size of the document;
/// entities multiply even that. What costs more than any backup would is refused here, in one pass
/// in proportion to the size.
namespace DocumentGuard {

/// The largest file that is read, in bytes.
inline constexpr int maxSize = 512 * 1024 * 1024;

/// Makes the @p document, in whatever encoding, safe to be parsed.
///
/// Whether it is well-formed is left to the parser, which finds the end of the document where it
/// can no longer be decoded.
/// @param document  its bytes as they are on the disk
/// @param meter     a fresh one, which has measured the document afterwards
/// @return the same document in UTF-8, without an XML declaration; nothing if it has a document
/// type declaration or exceeds one of MarkupMeter's limits
std::optional<QByteArray> admit(const QByteArray &document, MarkupMeter *meter);
/// The same, for whoever does not care how much of what there is.
std::optional<QByteArray> admit(const QByteArray &document);

/// The same with the content of @p file, which is open for reading. Refuses what is not a regular
/// file and what is larger than maxSize.
std::optional<QByteArray> read(QFile *file, MarkupMeter *meter);
/// The same, for whoever does not care how much of what there is.
std::optional<QByteArray> read(QFile *file);

} // namespace DocumentGuard
