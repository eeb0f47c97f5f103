#pragma once

#include <QByteArray>

#include <optional>

/// One chunk as the controller delivers it.
struct Chunk
{
    int total = 0;     ///< how many there are
    QByteArray quoted; ///< the text between the quotes
};

/// What @p answer says, nothing where it is no chunk.
std::optional<Chunk> chunkIn(const QByteArray &answer);
