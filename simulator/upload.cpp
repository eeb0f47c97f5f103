#include "simulator/upload.h"

#include "channel/transferencoding.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int mostChunks =
    (Archive::maxSize + TransferEncoding::chunkSize - 1) / TransferEncoding::chunkSize;

} // namespace

bool Upload::take(int total, int number, const QByteArray &text, QString *error)
{
    *error = objectionTo(total, number);
    if (!error->isEmpty()) {
        return false;
    }
    QByteArray chunk;
    const int size = TransferEncoding::decode(text, &chunk);
    const bool isLast = number == total;
    if (size < 1 || size > TransferEncoding::chunkSize
        || (!isLast && size < TransferEncoding::chunkSize)) {
        *error = QStringLiteral("not the text of a chunk");
        return false;
    }
    m_total = total;
    m_received = number;
    m_bytes.append(chunk);
    if (isLast) {
        finish();
    }
    return true;
}

const Archive::Item *Upload::find(const QByteArray &identifier) const
{
    const auto found =
        std::find_if(m_items.begin(), m_items.end(), [&identifier](const Archive::Item &item) {
            return item.identifier == identifier;
        });
    return found == m_items.end() ? nullptr : &*found;
}

void Upload::cancel()
{
    *this = Upload();
}

QString Upload::objectionTo(int total, int number) const
{
    if (total < 1 || total > mostChunks) {
        return QStringLiteral("impossible number of chunks");
    }
    if (m_received > 0 && total != m_total) {
        return QStringLiteral("%1 chunks were announced before").arg(m_total);
    }
    if (number > total || number != m_received + 1) {
        return QStringLiteral("chunk %1 is not the next one").arg(number);
    }
    return {};
}

void Upload::finish()
{
    const QByteArray bytes = std::move(m_bytes);
    m_bytes.clear();
    if (Archive::unpack(bytes, &m_items, &m_problem)) {
        m_state = State::Usable;
    } else {
        m_state = Archive::isArchive(bytes) ? State::Damaged : State::Unknown;
    }
}
