#pragma once

#include <QByteArray>
#include <QVector>

class QString;

/// What travels when configurations are downloaded and uploaded, before it is cut into chunks.
///
/// All numbers are big-endian:
///
///     8 bytes     "V4CONF\r\n" (a transfer in text mode spoils it visibly)
///     4 bytes     number of items
///     per item:
///         2 + n bytes   identifier, preceded by its length; 1 to 64 printable ASCII characters
///         2 + n bytes   owner, at most 100 bytes
///         2 + n bytes   description, at most 100 bytes
///         4 + n bytes   data
///         32 bytes      SHA-256 of the item up to here
///
/// The base configuration is an item like any other, under the identifier "__base".
namespace Archive {

struct Item
{
    QByteArray identifier;
    QByteArray owner;
    QByteArray description;
    QByteArray data;
};

/// The most that an archive may have, in bytes.
inline constexpr int maxSize = 64 * 1024 * 1024;

inline constexpr int headerSize = 12; ///< bytes before the first item

/// How many bytes @p item takes in an archive.
qint64 sizeOf(const Item &item);

/// Identifier, owner and description of the items keep to their lengths.
QByteArray pack(const QVector<Item> &items);

/// Whether @p bytes begin as an archive does.
bool isArchive(const QByteArray &bytes);

/// Reads an archive, which may be anything: takes time and memory in proportion to its size.
/// @return whether it is whole, intact and without doubles; if not, @p error says what is wrong
/// with it and @p items are left alone
bool unpack(const QByteArray &bytes, QVector<Item> *items, QString *error);

} // namespace Archive
