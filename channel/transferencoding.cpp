#include "channel/transferencoding.h"

#include <QtEndian>

#include <array>
#include <cstdint>
#include <cstring>

namespace {

// Three bytes are 24 bits, which are four characters: both directions work in such groups, the
// first byte and the first character being the least significant.
constexpr int groupBytes = 3;
constexpr int groupCharacters = 4;
constexpr unsigned bitsPerCharacter = 6;

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

using CharacterPair = std::array<char, 2>;

// The two characters of each value of twelve bits.
constexpr std::array<CharacterPair, 4096> pairs = [] {
    std::array<CharacterPair, 4096> table{};
    for (unsigned value = 0; value < table.size(); ++value) {
        table[value] = {alphabet[value & 0x3fU], alphabet[value >> bitsPerCharacter]};
    }
    return table;
}();

constexpr std::uint32_t notInAlphabet = 0x80000000U; // beyond the bits of a group

// What each character contributes to a group, by its place in the group.
using Contributions = std::array<std::array<std::uint32_t, 256>, groupCharacters>;
constexpr Contributions contributions = [] {
    Contributions table{};
    for (unsigned place = 0; place < groupCharacters; ++place) {
        for (std::uint32_t &contribution : table[place]) {
            contribution = notInAlphabet;
        }
        for (std::uint32_t value = 0; value < 64; ++value) {
            table[place][static_cast<unsigned char>(alphabet[value])] = value
                << (bitsPerCharacter * place);
        }
    }
    return table;
}();

// Two groups at once, out of eight bytes of which the first six count.
void writeCharacters(const char *bytes, char *text)
{
    auto groups = qFromLittleEndian<std::uint64_t>(bytes);
    for (int pair = 0; pair < 4; ++pair, text += 2, groups >>= 2 * bitsPerCharacter) {
        std::memcpy(text, pairs[groups & 0xfffU].data(), 2);
    }
}

std::uint32_t groupOfCharacters(const char *text, int count)
{
    std::uint32_t group = 0;
    for (int i = 0; i < count; ++i) {
        group |= contributions[static_cast<std::size_t>(i)][static_cast<unsigned char>(text[i])];
    }
    return group;
}

void writeBytes(std::uint32_t group, char *bytes, int count)
{
    for (int i = 0; i < count; ++i) {
        bytes[i] = static_cast<char>((group >> (8 * i)) & 0xffU);
    }
}

} // namespace

void TransferEncoding::encode(const char *bytes, int size, QByteArray *text)
{
    constexpr int step = 2 * groupBytes;
    constexpr int textStep = 2 * groupCharacters;
    const int textSize = size / groupBytes * groupCharacters + (size % groupBytes * 8 + 5) / 6;
    if (text->size() != textSize) {
        text->resize(textSize);
    }
    char *out = text->data();
    const char *const end = out + text->size();
    for (; size >= 8; size -= step, bytes += step, out += textStep) {
        writeCharacters(bytes, out);
    }
    // At most seven bytes are left; the bits missing after them are 0.
    std::uint64_t rest = 0;
    while (size > 0) {
        rest = rest << 8U | static_cast<unsigned char>(bytes[--size]);
    }
    for (; out < end; ++out, rest >>= bitsPerCharacter) {
        *out = alphabet[rest & 0x3fU];
    }
}

QByteArray TransferEncoding::encode(const QByteArray &bytes)
{
    QByteArray text;
    encode(bytes.constData(), bytes.size(), &text);
    return text;
}

int TransferEncoding::decode(const QByteArray &text, QByteArray *bytes)
{
    const int wholeGroups = text.size() / groupCharacters;
    const int rest = text.size() % groupCharacters;
    const int restBytes = rest * 6 / 8;
    const int before = bytes->size();
    const int decoded = wholeGroups * groupBytes + restBytes;
    bytes->resize(before + decoded);
    const char *in = text.constData();
    char *out = bytes->data() + before;
    std::uint32_t seen = 0; // a character outside the alphabet leaves its mark
    for (int i = 0; i < wholeGroups; ++i, in += groupCharacters, out += groupBytes) {
        const std::uint32_t group = groupOfCharacters(in, groupCharacters);
        writeBytes(group, out, groupBytes);
        seen |= group;
    }
    const std::uint32_t lastGroup = groupOfCharacters(in, rest);
    writeBytes(lastGroup, out, restBytes);
    if (((seen | lastGroup) & notInAlphabet) != 0) {
        bytes->truncate(before);
        return invalidCharacter;
    }
    return decoded;
}
