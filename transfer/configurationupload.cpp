#include "transfer/configurationupload.h"

#include "channel/controller.h"
#include "channel/transferencoding.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <limits>

namespace {

constexpr int failure = -1;
constexpr int unreadable = -2;

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

int uploadConfigurationFile(const Controller &controller, const QString &path)
{
    QFile file(path);
    if (!openForReading(&file)) {
        controller.report(QStringLiteral("file cannot be opened for reading"));
        return unreadable;
    }
    const int count = static_cast<int>(chunkCount(file));
    std::array<char, TransferEncoding::chunkSize> bytes;
    QByteArray text;
    for (int number = 1; number <= count; ++number) {
        const auto size = static_cast<int>(std::max(file.read(bytes.data(), bytes.size()), 0LL));
        if (size == 0) {
            controller.report(QStringLiteral("unable to read data: %1").arg(size));
            return failure;
        }
        TransferEncoding::encode(bytes.data(), size, &text);
        if (text.isEmpty()) {
            controller.report(QStringLiteral("unable to convert data: %1").arg(text.size()));
            return failure;
        }
        controller.uploadChunk(count, number, text);
    }
    return count > 0 ? 0 : failure;
}
