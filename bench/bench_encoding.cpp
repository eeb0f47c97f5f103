// The transfer encoding, beside Base64 as Qt and a library for nothing else do it, and beside
// copying the bytes.

#include "bench/operations.h"
#include "bench/sampledata.h"
#include "bench/turns.h"
#include "channel/transferencoding.h"

#include <benchmark/benchmark.h>

extern "C" {
#include <b64/cdecode.h>
#include <b64/cencode.h>
}

#include <algorithm>
#include <cstring>

namespace {

constexpr int chunk = TransferEncoding::chunkSize;
constexpr int large = 16 * SampleData::mebibyte;

// A chunk is done in no time, so there it is done often.
template <typename Action>
Operations::Operation often(int size, Action action)
{
    const int times = std::max(1, 1000000 / size);
    return Operations::timed([action, times]() mutable {
        for (int i = 0; i < times; ++i) {
            action();
        }
    });
}

// Into the same text again and again, as the uploads do.
Operations::Operation encode(int size)
{
    return often(size, [bytes = SampleData::bytes(size), text = QByteArray()]() mutable {
        TransferEncoding::encode(bytes.constData(), bytes.size(), &text);
        benchmark::DoNotOptimize(text.data());
    });
}

Operations::Operation encodeWithQt(int size)
{
    return often(size,
                 [bytes = SampleData::bytes(size)] { benchmark::DoNotOptimize(bytes.toBase64()); });
}

Operations::Operation encodeWithLibb64(int size)
{
    return often(size, [bytes = SampleData::bytes(size)] {
        QByteArray text(bytes.size() * 2 + 8, Qt::Uninitialized);
        base64_encodestate encoder;
        base64_init_encodestate(&encoder);
        int length = base64_encode_block(bytes.constData(), bytes.size(), text.data(), &encoder);
        length += base64_encode_blockend(text.data() + length, &encoder);
        text.truncate(length);
        benchmark::DoNotOptimize(text);
    });
}

Operations::Operation decode(int size)
{
    return often(size, [text = TransferEncoding::encode(SampleData::bytes(size))] {
        QByteArray bytes;
        benchmark::DoNotOptimize(TransferEncoding::decode(text, &bytes));
        benchmark::DoNotOptimize(bytes);
    });
}

Operations::Operation decodeWithQt(int size)
{
    return often(size, [text = SampleData::bytes(size).toBase64()] {
        benchmark::DoNotOptimize(QByteArray::fromBase64(text));
    });
}

Operations::Operation decodeWithLibb64(int size)
{
    return often(size, [text = SampleData::bytes(size).toBase64()] {
        QByteArray bytes(text.size(), Qt::Uninitialized);
        base64_decodestate decoder;
        base64_init_decodestate(&decoder);
        bytes.truncate(base64_decode_block(text.constData(), text.size(), bytes.data(), &decoder));
        benchmark::DoNotOptimize(bytes);
    });
}

Operations::Operation copy(int size)
{
    return often(size, [bytes = SampleData::bytes(size)] {
        QByteArray copy(bytes.size(), Qt::Uninitialized);
        std::memcpy(copy.data(), bytes.constData(), static_cast<std::size_t>(bytes.size()));
        benchmark::DoNotOptimize(copy);
    });
}

const bool areAdded = [] {
    using Operations::add;
    return add("encode", encode) && add("encode-qt", encodeWithQt)
        && add("encode-libb64", encodeWithLibb64) && add("decode", decode)
        && add("decode-qt", decodeWithQt) && add("decode-libb64", decodeWithLibb64)
        && add("copy", copy)
        && takeTurns({"encode", "encode-qt", "encode-libb64", "copy"}, {chunk, large}, 5)
        && takeTurns({"decode", "decode-qt", "decode-libb64", "copy"}, {chunk, large}, 5);
}();

} // namespace
