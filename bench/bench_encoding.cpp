// The transfer encoding, beside Base64 as Qt and a library for nothing else do it.

#include "bench/sampledata.h"
#include "channel/transferencoding.h"

#include <benchmark/benchmark.h>

extern "C" {
#include <b64/cdecode.h>
#include <b64/cencode.h>
}

#include <cstring>

namespace {

constexpr int chunk = TransferEncoding::chunkSize;
constexpr int large = 16 * 1024 * 1024;

int sizeOf(const benchmark::State &state)
{
    return static_cast<int>(state.range(0));
}

void setThroughput(benchmark::State &state)
{
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

// Into the same text again and again, as the uploads do.
void encode(benchmark::State &state)
{
    const QByteArray bytes = SampleData::bytes(sizeOf(state));
    QByteArray text;
    for (auto _ : state) {
        TransferEncoding::encode(bytes.constData(), bytes.size(), &text);
        benchmark::DoNotOptimize(text.data());
    }
    setThroughput(state);
}

void encodeWithQt(benchmark::State &state)
{
    const QByteArray bytes = SampleData::bytes(sizeOf(state));
    for (auto _ : state) {
        benchmark::DoNotOptimize(bytes.toBase64());
    }
    setThroughput(state);
}

void encodeWithLibb64(benchmark::State &state)
{
    const QByteArray bytes = SampleData::bytes(sizeOf(state));
    for (auto _ : state) {
        QByteArray text(bytes.size() * 2 + 8, Qt::Uninitialized);
        base64_encodestate encoder;
        base64_init_encodestate(&encoder);
        int length = base64_encode_block(bytes.constData(), bytes.size(), text.data(), &encoder);
        length += base64_encode_blockend(text.data() + length, &encoder);
        text.truncate(length);
        benchmark::DoNotOptimize(text);
    }
    setThroughput(state);
}

void decode(benchmark::State &state)
{
    const QByteArray text = TransferEncoding::encode(SampleData::bytes(sizeOf(state)));
    for (auto _ : state) {
        QByteArray bytes;
        benchmark::DoNotOptimize(TransferEncoding::decode(text, &bytes));
        benchmark::DoNotOptimize(bytes);
    }
    setThroughput(state);
}

void decodeWithQt(benchmark::State &state)
{
    const QByteArray text = SampleData::bytes(sizeOf(state)).toBase64();
    for (auto _ : state) {
        benchmark::DoNotOptimize(QByteArray::fromBase64(text));
    }
    setThroughput(state);
}

void decodeWithLibb64(benchmark::State &state)
{
    const QByteArray text = SampleData::bytes(sizeOf(state)).toBase64();
    for (auto _ : state) {
        QByteArray bytes(text.size(), Qt::Uninitialized);
        base64_decodestate decoder;
        base64_init_decodestate(&decoder);
        bytes.truncate(base64_decode_block(text.constData(), text.size(), bytes.data(), &decoder));
        benchmark::DoNotOptimize(bytes);
    }
    setThroughput(state);
}

void copyBytes(benchmark::State &state)
{
    const QByteArray bytes = SampleData::bytes(sizeOf(state));
    for (auto _ : state) {
        QByteArray copy(bytes.size(), Qt::Uninitialized);
        std::memcpy(copy.data(), bytes.constData(), static_cast<std::size_t>(bytes.size()));
        benchmark::DoNotOptimize(copy);
    }
    setThroughput(state);
}

BENCHMARK(encode)->Name("encode/ours")->Arg(chunk)->Arg(large);
BENCHMARK(encodeWithQt)->Name("encode/qt")->Arg(chunk)->Arg(large);
BENCHMARK(encodeWithLibb64)->Name("encode/libb64")->Arg(chunk)->Arg(large);
BENCHMARK(decode)->Name("decode/ours")->Arg(chunk)->Arg(large);
BENCHMARK(decodeWithQt)->Name("decode/qt")->Arg(chunk)->Arg(large);
BENCHMARK(decodeWithLibb64)->Name("decode/libb64")->Arg(chunk)->Arg(large);
BENCHMARK(copyBytes)->Name("encode/memcpy")->Arg(chunk)->Arg(large);

} // namespace
