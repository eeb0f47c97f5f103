#pragma once

#include "host/transferchunk.h"

#include <QString>

struct Exchange;

/// Chunks of one transfer that have passed one after the other, which a log shows as one row that
/// counts. A chunk that failed, or was answered with anything but a chunk, is in no run.
class ChunkRun
{
public:
    /// Takes the next exchange into account. @return whether it goes on with the run; otherwise it
    /// has begun another one, or none
    bool goesOnWith(const Exchange &exchange);
    /// Forgets the run: something else has come between.
    void end() { m_last.reset(); }

    /// The command with the numbers of the first and the last chunk.
    QString command() const;
    /// How many of how many chunks have passed.
    QString answer() const;
    /// How long the caller was blocked in all.
    qint64 microseconds() const { return m_microseconds; }

private:
    std::optional<TransferChunk> m_last;
    int m_firstNumber = 0;
    int m_total = 0;
    qint64 m_microseconds = 0;
};
