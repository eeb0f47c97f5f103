#include "transfer/configurationupload.h"

#include "channel/hostmessages.h"
#include "channel/transferencoding.h"
#include "hostapi/iomanager.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <limits>

namespace {

qint64 chunkCount(const QFile &file)
{
    return (file.size() + TransferEncoding::chunkSize - 1) / TransferEncoding::chunkSize;
}

bool openForReading(QFile *file)
{
    // Opening a pipe would wait until somebody writes into it.
    return QFileInfo(*file).isFile() && file->open(QIODevice::ReadOnly)
        && chunkCount(*file) < std::numeric_limits<int>::max();
}

} // namespace

ConfigurationUpload::ConfigurationUpload(IOManager *channel)
    : m_channel(channel)
{
}

int ConfigurationUpload::run(const QString &path)
{
    QFile file(path);
    if (!openForReading(&file)) {
        HostMessages::reportError(m_channel, QStringLiteral("file cannot be opened for reading"));
        return unreadable;
    }
    const int count = static_cast<int>(chunkCount(file));
    if (count < 1) {
        return failure;
    }
    for (int number = 1; number <= count; ++number) {
        if (!sendChunk(&file, count, number)) {
            return failure;
        }
    }
    return success;
}

bool ConfigurationUpload::sendChunk(QFile *file, int count, int number)
{
    std::array<char, TransferEncoding::chunkSize> bytes;
    const auto size = static_cast<int>(std::max(file->read(bytes.data(), bytes.size()), 0LL));
    if (size == 0) {
        HostMessages::reportError(m_channel, QStringLiteral("unable to read data: %1").arg(size));
        return false;
    }
    TransferEncoding::encode(bytes.data(), size, &m_text);
    if (m_text.isEmpty()) {
        HostMessages::reportError(m_channel,
                                  QStringLiteral("unable to convert data: %1").arg(m_text.size()));
        return false;
    }
    m_channel->sendCommand("system upload %d %d %s", count, number, m_text.constData());
    return true;
}
