#include "simulator/download.h"

#include "channel/transferencoding.h"

#include <QString>

bool Download::prepare(const Archive::Item &item, QString *error)
{
    const qint64 size = m_size + Archive::sizeOf(item);
    if (m_identifiers.contains(item.identifier)) {
        *error = QStringLiteral("prepared already");
        return false;
    }
    if (size > Archive::maxSize - Archive::headerSize) {
        *error = QStringLiteral("too much for one download");
        return false;
    }
    m_identifiers.insert(item.identifier);
    m_items.append(item);
    m_size = size;
    m_archive.clear();
    return true;
}

int Download::chunkCount()
{
    return (archive().size() + TransferEncoding::chunkSize - 1) / TransferEncoding::chunkSize;
}

std::optional<QByteArray> Download::chunk(int n)
{
    if (n < 1 || n > chunkCount()) {
        return {};
    }
    return TransferEncoding::encode(
        archive().mid((n - 1) * TransferEncoding::chunkSize, TransferEncoding::chunkSize));
}

void Download::cancel()
{
    *this = Download();
}

const QByteArray &Download::archive()
{
    if (m_archive.isEmpty() && isAvailable()) {
        m_archive = Archive::pack(m_items);
    }
    return m_archive;
}
