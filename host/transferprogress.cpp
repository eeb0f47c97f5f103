#include "host/transferprogress.h"

#include <QCoreApplication>
#include <QList>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("TransferProgress", text);
}

} // namespace

bool TransferProgress::follow(const QByteArray &command, const QByteArray &answer, int result)
{
    const QByteArray download = "system download ";
    const QByteArray upload = "system upload ";
    if (command.startsWith(download)) {
        return followDownload(command.mid(download.size()), answer, result);
    }
    if (command.startsWith(upload)) {
        return followUpload(command.mid(upload.size()), result);
    }
    return false;
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

bool TransferProgress::followDownload(const QByteArray &argument, const QByteArray &answer,
                                      int result)
{
    if (argument == "cancel") {
        return cancel(Direction::Download);
    }
    bool isNumber = false;
    const int chunk = argument.toInt(&isNumber);
    if (!isNumber) {
        return false;
    }
    // Only the first chunk's answer counts: the module does not look at the later totals either.
    bool isTotalKnown = true;
    const int total =
        chunk == 1 ? answer.trimmed().split(' ').constFirst().toInt(&isTotalKnown) : m_total;
    pass(Direction::Download, chunk, total, result == 0 && isTotalKnown);
    return true;
}

bool TransferProgress::followUpload(const QByteArray &arguments, int result)
{
    if (arguments == "cancel") {
        return cancel(Direction::Upload);
    }
    const QList<QByteArray> words = arguments.split(' ');
    bool isNumber = false;
    const int chunk = words.value(1).toInt(&isNumber);
    if (!isNumber) {
        return false;
    }
    pass(Direction::Upload, chunk, words.constFirst().toInt(), result == 0);
    return true;
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

void TransferProgress::pass(Direction direction, int chunk, int total, bool isPassed)
{
    m_direction = direction;
    m_chunk = chunk;
    m_total = total;
    if (!isPassed) {
        m_state = State::BrokenOff;
    } else {
        m_state = chunk >= total ? State::Complete : State::Running;
    }
}
