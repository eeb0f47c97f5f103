// The encoding of configuration data in the command channel, both ways.

#include "channel/transferencoding.h"

#include "fuzz/target.h"

#include <algorithm>

namespace {

bool isInAlphabet(char character)
{
    static const QByteArray alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    return alphabet.contains(character);
}

void encodeAndDecode(const QByteArray &bytes)
{
    const QByteArray text = TransferEncoding::encode(bytes);
    Fuzz::demand(text.size() == (8 * bytes.size() + 5) / 6, "n bytes give ceil(8n / 6) characters");
    Fuzz::demand(std::all_of(text.begin(), text.end(), isInAlphabet),
                 "only the alphabet is written");
    QByteArray decoded;
    Fuzz::demand(TransferEncoding::decode(text, &decoded) == bytes.size() && decoded == bytes,
                 "what was encoded is decoded again");
}

void decodeAndEncode(const QByteArray &text)
{
    const QByteArray before = "before";
    QByteArray bytes = before;
    const int size = TransferEncoding::decode(text, &bytes);
    if (!std::all_of(text.begin(), text.end(), isInAlphabet)) {
        Fuzz::demand(size == TransferEncoding::invalidCharacter && bytes == before,
                     "a character outside the alphabet is refused, and nothing is appended");
        return;
    }
    Fuzz::demand(size == 6 * text.size() / 8, "m characters give floor(6m / 8) bytes");
    Fuzz::demand(bytes.startsWith(before) && bytes.size() == before.size() + size,
                 "the bytes are appended");
    // The last character may have bits beyond the last byte, or nothing but such bits.
    const QByteArray encoded = TransferEncoding::encode(bytes.mid(before.size()));
    const int whole = text.size() / 4 * 4;
    Fuzz::demand(encoded.left(whole) == text.left(whole), "what was decoded is encoded again");
}

} // namespace

void fuzz(const QByteArray &input)
{
    encodeAndDecode(input);
    decodeAndEncode(input);
}
