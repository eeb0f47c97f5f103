#include "channel/transferencoding.h"

#include <array>
#include <cstdint>

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t notInAlphabet = 0xff; // no value of six bits has its upper two bits set

constexpr std::array<std::uint8_t, 256> makeValues()
{
    std::array<std::uint8_t, 256> values{};
    for (std::uint8_t &value : values) {
        value = notInAlphabet;
    }
    for (std::uint8_t value = 0; value < 64; ++value) {
        values[static_cast<unsigned char>(alphabet[value])] = value;
    }
    return values;
}

constexpr std::array<std::uint8_t, 256> values = makeValues();

} // namespace

QByteArray TransferEncoding::encode(const QByteArray &bytes)
{
    QByteArray text((bytes.size() * 8 + 5) / 6, Qt::Uninitialized);
    char *out = text.data();
    std::uint32_t pending = 0; // bits not written yet, the next one lowest
    int pendingBits = 0;
    for (const char byte : bytes) {
        pending |= static_cast<std::uint32_t>(static_cast<unsigned char>(byte)) << pendingBits;
        pendingBits += 8;
        while (pendingBits >= 6) {
            *out++ = alphabet[pending & 0x3fU];
            pending >>= 6U;
            pendingBits -= 6;
        }
    }
    if (pendingBits > 0) {
        *out = alphabet[pending];
    }
    return text;
}

int TransferEncoding::decode(const QByteArray &text, QByteArray *bytes)
{
    QByteArray decoded(text.size() * 6 / 8, Qt::Uninitialized);
    char *out = decoded.data();
    std::uint32_t pending = 0;
    int pendingBits = 0;
    for (const char character : text) {
        const std::uint32_t value = values[static_cast<unsigned char>(character)];
        if (value == notInAlphabet) {
            return invalidCharacter;
        }
        pending |= value << pendingBits;
        pendingBits += 6;
        if (pendingBits >= 8) {
            *out++ = static_cast<char>(pending & 0xffU);
            pending >>= 8U;
            pendingBits -= 8;
        }
    }
    bytes->append(decoded);
    return decoded.size();
}
