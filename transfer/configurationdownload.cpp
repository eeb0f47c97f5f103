#include "transfer/configurationdownload.h"

#include "channel/chunkdownload.h"
#include "channel/controller.h"

#include <cstdio>
#include <memory>

namespace {

constexpr int failure = -1;
constexpr int fileExists = -2;

struct CloseFile
{
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

File openFile(const QString &fileName, const char *mode)
{
    return File(std::fopen(nameOnDisk(fileName).constData(), mode));
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

bool writeChunk(const Controller &controller, const Chunk &chunk, const QString &fileName)
{
    File file = openFile(fileName, chunk.number == 1 ? "wb" : "ab");
    if (!file) {
        controller.report(QStringLiteral("unable to open file '%1'").arg(fileName));
        return false;
    }
    return controller.reportUnless(writeAll(std::move(file), chunk.bytes), "unable to write data");
}

} // namespace

int downloadConfigurationFile(const Controller &controller, const QString &fileName)
{
    if (openFile(fileName, "rb")) {
        controller.report(QStringLiteral("file already exists"));
        return fileExists;
    }
    QByteArray refused;
    const DownloadEnd end = downloadChunks(
        controller, [&](const Chunk &chunk) { return writeChunk(controller, chunk, fileName); },
        &refused);
    const QString quoted = QString::fromLatin1(refused);
    if (end == DownloadEnd::NotAChunk) {
        controller.report(QStringLiteral("invalid return: %1").arg(quoted));
    } else if (end == DownloadEnd::Undecodable) {
        controller.report(QStringLiteral("unable to parse '%1'").arg(quoted));
    }
    return end == DownloadEnd::Complete ? 0 : failure;
}
