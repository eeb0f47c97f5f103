#pragma once

#include <QByteArray>

/// The encoding in which configuration data travels through the command channel, in both
/// directions.
///
/// It uses the Base64 alphabet (RFC 4648: "A" to "Z" are 0 to 25, "a" to "z" 26 to 51, "0" to "9"
/// 52 to 61, "+" 62,
/// "/" 63), but it is not Base64: the bits are packed the other way round and nothing is padded.
/// The bytes form one stream of bits, the least significant bit of the first byte coming first;
/// character i carries the bits 6i to 6i+5, the first of them in its least significant place.
///
///     01          <-> "BA"     (Base64 would write "AQ==")
///     41          <-> "BB"
///     ff          <-> "/D"
///     100 bytes   <-> 134 characters
///
/// The functions are pure and may be called from any thread.
namespace TransferEncoding {

/// The number of bytes in every chunk of a transfer but the last, which may be shorter.
inline constexpr int chunkSize = 100;

/// decode()'s verdict on a character outside the alphabet; "=" is one.
inline constexpr int invalidCharacter = -11;

/// n bytes give ceil(8n / 6) characters; the bits missing in the last one are 0.
QByteArray encode(const QByteArray &bytes);
/// The same with @p size bytes, into a @p text whose memory is used again: whoever encodes one
/// chunk after the other does not allocate for each.
void encode(const char *bytes, int size, QByteArray *text);

/// m characters give floor(6m / 8) bytes; the bits beyond them are dropped.
/// @return the number of bytes appended to @p bytes, or invalidCharacter, in which case nothing is
/// appended
int decode(const QByteArray &text, QByteArray *bytes);

} // namespace TransferEncoding
