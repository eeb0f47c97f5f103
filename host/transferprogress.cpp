#include "host/transferprogress.h"

using Direction = TransferChunk::Direction;

bool TransferProgress::follow(const QByteArray &command, const QByteArray &answer, int result)
{
    if (command == "system download cancel") {
        return cancel(Direction::Download);
    }
    if (command == "system upload cancel") {
        return cancel(Direction::Upload);
    }
    const std::optional<TransferChunk> chunk = TransferChunk::of(command, answer);
    if (chunk) {
        pass(*chunk, result);
    }
    return chunk.has_value();
}

int TransferProgress::percent() const
{
    return m_total > 0 ? static_cast<int>(qint64(100) * qMin(m_chunk, m_total) / m_total) : 0;
}

QString TransferProgress::text(const QString &occasion) const
{
    const QString direction = m_direction == Direction::Download ? tr("Download") : tr("Upload");
    const QString what = occasion.isEmpty() ? direction : occasion;
    switch (m_state) {
    case State::Idle:
        return occasion;
    case State::Running:
        return tr("%1: chunk %2 of %3").arg(what).arg(m_chunk).arg(m_total);
    case State::Complete:
        return tr("%1 complete, %2 chunks").arg(what).arg(m_total);
    case State::BrokenOff:
        return tr("%1 broke off at chunk %2").arg(what).arg(m_chunk);
    case State::Cancelled:
        return tr("%1 cancelled").arg(what);
    }
    return {};
}

// Modules also cancel before they begin, to be sure; that is nothing to be told.
bool TransferProgress::cancel(Direction direction)
{
    const bool isOurs = m_state == State::Running && m_direction == direction;
    if (isOurs) {
        m_state = State::Cancelled;
    }
    return isOurs;
}

// Of a download only the first answer's total counts: modules do not look at later ones either.
void TransferProgress::pass(const TransferChunk &chunk, int result)
{
    const bool isLaterDownload = chunk.direction == Direction::Download && chunk.number > 1;
    const int total = isLaterDownload ? m_total : chunk.total;
    m_direction = chunk.direction;
    m_chunk = chunk.number;
    m_total = total;
    if (result != 0 || total == TransferChunk::unknown) {
        m_state = State::BrokenOff;
    } else {
        m_state = m_chunk >= m_total ? State::Complete : State::Running;
    }
}
