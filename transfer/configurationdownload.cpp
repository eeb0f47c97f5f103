#include "transfer/configurationdownload.h"

#include "channel/downloadanswer.h"
#include "channel/hostmessages.h"
#include "channel/replybuffer.h"
#include "channel/transferencoding.h"
#include "hostapi/iomanager.h"

#include <QByteArray>

#include <cstdio>
#include <memory>
#include <optional>

namespace {

struct CloseFile
{
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// Files of this kind are named in Latin-1 on the disk, whatever the system's own encoding.
File openFile(const QString &fileName, const char *mode)
{
    return File(std::fopen(fileName.toLatin1().constData(), mode));
}

bool writeAll(File file, const QByteArray &bytes)
{
    // Unbuffered, so that a full disk shows now and not when the file is closed.
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    const auto size = static_cast<std::size_t>(bytes.size());
    const bool isWritten = std::fwrite(bytes.constData(), 1, size, file.get()) == size;
    // Disks in the network may tell only at the end.
    const bool isClosed = std::fclose(file.release()) == 0;
    return isWritten && isClosed;
}

} // namespace

ConfigurationDownload::ConfigurationDownload(IOManager *channel)
    : m_channel(channel)
{
}

int ConfigurationDownload::run(const QString &fileName)
{
    if (openFile(fileName, "rb")) {
        HostMessages::reportError(m_channel, QStringLiteral("file already exists"));
        return fileExists;
    }
    int number = 0;
    do {
        ++number;
        QByteArray bytes;
        if (!fetchChunk(number, &bytes) || !writeChunk(number, bytes, fileName)) {
            return failure;
        }
    } while (number < m_total);
    return success;
}

bool ConfigurationDownload::fetchChunk(int number, QByteArray *bytes)
{
    ReplyBuffer reply;
    if (m_channel->queryString(reply.data(), "system download %d", number) != 0) {
        return false;
    }
    const std::optional<DownloadAnswer> answer = parseDownloadAnswer(reply.bytes());
    if (!answer) {
        HostMessages::reportError(m_channel,
                                  QStringLiteral("invalid return: %1").arg(reply.text()));
        return false;
    }
    if (m_total == 0) {
        m_total = answer->total;
    }
    if (TransferEncoding::decode(answer->text, bytes) < 0) {
        HostMessages::reportError(
            m_channel,
            QStringLiteral("unable to parse '%1'").arg(QString::fromLatin1(answer->text)));
        return false;
    }
    return true;
}

bool ConfigurationDownload::writeChunk(int number, const QByteArray &bytes, const QString &fileName)
{
    File file = openFile(fileName, number == 1 ? "wb" : "ab");
    if (!file) {
        HostMessages::reportError(m_channel,
                                  QStringLiteral("unable to open file '%1'").arg(fileName));
        return false;
    }
    if (!writeAll(std::move(file), bytes)) {
        HostMessages::reportError(m_channel, QStringLiteral("unable to write data"));
        return false;
    }
    return true;
}
