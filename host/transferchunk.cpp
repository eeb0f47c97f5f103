#include "host/transferchunk.h"

#include <QList>

namespace {

int numberIn(const QByteArray &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber ? number : TransferChunk::unknown;
}

int totalIn(const QByteArray &answer)
{
    const QByteArray trimmed = answer.trimmed();
    const int quote = trimmed.indexOf('\'');
    const bool isQuoted = quote >= 0 && quote < trimmed.size() - 1 && trimmed.endsWith('\'');
    return isQuoted ? numberIn(trimmed.left(quote).trimmed()) : TransferChunk::unknown;
}

} // namespace

std::optional<TransferChunk> TransferChunk::of(const QByteArray &command, const QByteArray &answer)
{
    const QByteArray download = "system download ";
    const QByteArray upload = "system upload ";
    TransferChunk chunk;
    if (command.startsWith(download)) {
        chunk = {Direction::Download, numberIn(command.mid(download.size())), totalIn(answer)};
    } else if (command.startsWith(upload)) {
        const QList<QByteArray> words = command.mid(upload.size()).split(' ');
        chunk = {Direction::Upload, numberIn(words.value(1)), numberIn(words.constFirst())};
    }
    return chunk.number > 0 ? std::optional(chunk) : std::nullopt;
}
