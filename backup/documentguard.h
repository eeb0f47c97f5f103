#pragma once

#include <QByteArray>

#include <optional>

class QFile;

/// Decides which XML documents may be given to a parser.
///
/// Qt's stream reader takes time that grows with the square of the attributes in a tag and with the
/// namespaces in scope, and what is built upon it hashes the namespace of each element anew and
/// takes memory many times the size of the document; entities multiply even that. So a document is
/// admitted only if it has no document type, is nested at most 16 elements deep, has at most 1,000
/// attributes in a tag, and if its tags, attributes, comments and instructions, each taken to be as
/// long as the longest tag but at least 256 characters, come to no more than 2^28 characters. That
/// takes one pass in proportion to the size, and no backup comes near any of it.
namespace DocumentGuard {

/// The largest file that is read, in bytes.
inline constexpr int maxSize = 512 * 1024 * 1024;
/// Elements within each other.
inline constexpr int maxDepth = 16;
/// Attributes in one tag.
inline constexpr int maxAttributes = 1000;
/// Characters that each piece of markup counts for at least.
inline constexpr int leastLength = 256;
/// The number of pieces times the length of the longest tag.
inline constexpr qint64 maxCost = 1LL << 28;

/// Makes the @p document, in whatever encoding, safe to be parsed.
///
/// Whether it is well-formed is left to the parser; one that cannot be decoded comes out empty.
/// @param document  its bytes as they are on the disk
/// @return the same document in UTF-8, without an XML declaration; nothing if it is not admitted
std::optional<QByteArray> admit(const QByteArray &document);

/// The same with the content of @p file, which is open for reading. Refuses what is not a regular
/// file and what is larger than maxSize.
std::optional<QByteArray> read(QFile *file);

} // namespace DocumentGuard
