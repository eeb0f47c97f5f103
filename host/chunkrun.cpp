#include "host/chunkrun.h"

#include "simulator/channelobserver.h"

#include <QCoreApplication>

namespace {

std::optional<TransferChunk> passedChunk(const Exchange &exchange)
{
    const std::optional<TransferChunk> chunk = TransferChunk::of(exchange.command, exchange.answer);
    const bool isPassed = chunk && exchange.result == 0 && chunk->total != TransferChunk::unknown;
    return isPassed ? chunk : std::nullopt;
}

bool follows(const TransferChunk &chunk, const std::optional<TransferChunk> &last)
{
    const bool isSameTransfer = last && chunk.direction == last->direction
        && (chunk.direction == TransferChunk::Direction::Download || chunk.total == last->total);
    return isSameTransfer && chunk.number == last->number + 1;
}

} // namespace

bool ChunkRun::goesOnWith(const Exchange &exchange)
{
    const std::optional<TransferChunk> chunk = passedChunk(exchange);
    const bool goesOn = chunk && follows(*chunk, m_last);
    if (chunk && !goesOn) {
        m_firstNumber = chunk->number;
        m_total = chunk->total;
        m_microseconds = 0;
    }
    m_last = chunk;
    m_microseconds += exchange.microseconds;
    return goesOn;
}

QString ChunkRun::command() const
{
    const QString numbers = QStringLiteral("%1 \u2026 %2").arg(m_firstNumber).arg(m_last->number);
    return m_last->direction == TransferChunk::Direction::Download
        ? QStringLiteral("system download ") + numbers
        : QStringLiteral("system upload %1 ").arg(m_total) + numbers;
}

QString ChunkRun::answer() const
{
    return QCoreApplication::translate("ChunkRun", "%1 of %2 chunks")
        .arg(m_last->number - m_firstNumber + 1)
        .arg(m_total);
}
