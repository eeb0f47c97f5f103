#include "host/transferprogress.h"

#include <QCoreApplication>

using Direction = TransferChunk::Direction;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("TransferProgress", text);
}

} // namespace

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

QString TransferProgress::text() const
{
    const bool isDownload = m_direction == Direction::Download;
    switch (m_state) {
    case State::Idle:
        return {};
    case State::Running:
        return (isDownload ? tr("Download: chunk %1 of %2") : tr("Upload: chunk %1 of %2"))
            .arg(m_chunk)
            .arg(m_total);
    case State::Complete:
        return (isDownload ? tr("Download complete, %1 chunks") : tr("Upload complete, %1 chunks"))
            .arg(m_total);
    case State::BrokenOff:
        return (isDownload ? tr("Download broke off at chunk %1")
                           : tr("Upload broke off at chunk %1"))
            .arg(m_chunk);
    case State::Cancelled:
        return isDownload ? tr("Download cancelled") : tr("Upload cancelled");
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
