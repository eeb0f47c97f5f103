#include "tests/sweep/chunks.h"

#include <array>
#include <cstdio>

std::optional<Chunk> chunkIn(const QByteArray &answer)
{
    constexpr int bothFields = 2;
    Chunk chunk;
    std::array<char, 512> text{};
    // The scan format by which the answer is defined; the texts of a sweep are no wild ones.
    // NOLINTNEXTLINE(cert-err34-c)
    if (std::sscanf(answer.constData(), " %d '%511[^']' ", &chunk.total, text.data())
        != bothFields) {
        return std::nullopt;
    }
    chunk.quoted = text.data();
    return chunk;
}
