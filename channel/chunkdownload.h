#pragma once

#include <QByteArray>

#include <functional>

class Controller;

/// A part of what the controller has prepared for download.
struct Chunk
{
    int number;       ///< from 1 on
    int total;        ///< how many there are; may be 0 or below as long as there is only one
    QByteArray bytes; ///< decoded
};

/// How a download came to its end.
enum class DownloadEnd {
    Complete,
    NoAnswer,    ///< a chunk was not answered
    NotAChunk,   ///< an answer does not have the form of one
    Undecodable, ///< a chunk is not in the transfer encoding
    NotTaken     ///< nobody wanted the rest
};

/// Fetches what the controller has prepared for download, chunk by chunk.
///
/// The first number of chunks that is not 0 counts; the controller does not always repeat it.
/// @param take     called with each chunk before the next is asked for; ends the download by
///                 returning false
/// @param refused  receives the answer that is no chunk, or the text that is undecodable
DownloadEnd downloadChunks(const Controller &controller,
                           const std::function<bool(const Chunk &)> &take, QByteArray *refused);
