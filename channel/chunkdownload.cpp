#include "channel/chunkdownload.h"

#include "channel/controller.h"
#include "channel/downloadanswer.h"
#include "channel/replybuffer.h"
#include "channel/transferencoding.h"

#include <optional>

DownloadEnd downloadChunks(const Controller &controller,
                           const std::function<bool(const Chunk &)> &take, QByteArray *refused)
{
    Chunk chunk{0, 0, {}};
    chunk.bytes.reserve(ReplyBuffer::capacity); // once for all
    do {
        ++chunk.number;
        ReplyBuffer reply;
        if (!controller.downloadChunk(chunk.number, &reply)) {
            return DownloadEnd::NoAnswer;
        }
        const std::optional<DownloadAnswer> answer = parseDownloadAnswer(reply.data());
        if (!answer) {
            *refused = reply.bytes();
            return DownloadEnd::NotAChunk;
        }
        if (chunk.total == 0) {
            chunk.total = answer->total;
        }
        chunk.bytes.resize(0);
        if (TransferEncoding::decode(answer->text, &chunk.bytes) < 0) {
            *refused = answer->text;
            return DownloadEnd::Undecodable;
        }
        if (!take(chunk)) {
            return DownloadEnd::NotTaken;
        }
    } while (chunk.number < chunk.total);
    return DownloadEnd::Complete;
}
