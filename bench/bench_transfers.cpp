// Collecting, saving and uploading, beside the bare loops of their commands.

#include "backup/fullbackup.h"
#include "bench/bareloops.h"
#include "bench/freechannel.h"
#include "bench/sampledata.h"
#include "channel/transferencoding.h"
#include "transfer/configurationdownload.h"
#include "transfer/configurationupload.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr int mebibyte = 1024 * 1024;
constexpr int configurations = 10;

int sizeOf(const benchmark::State &state)
{
    return static_cast<int>(state.range(0)) * mebibyte;
}

int chunksOf(const benchmark::State &state)
{
    return (sizeOf(state) + TransferEncoding::chunkSize - 1) / TransferEncoding::chunkSize;
}

FreeChannel channelOf(const benchmark::State &state)
{
    FreeChannel channel;
    channel.setConfigurations(configurations);
    channel.setDownload(sizeOf(state));
    return channel;
}

// What is measured goes here; a new file each time.
class TargetFile
{
public:
    QString path() const { return m_folder.filePath(QStringLiteral("target.dat")); }
    void remove() const { QFile::remove(path()); }

private:
    const QTemporaryDir m_folder;
};

void collect(benchmark::State &state)
{
    FreeChannel channel = channelOf(state);
    BackendVersions controller = SampleData::versions();
    for (auto _ : state) {
        FullBackup backup(&channel, &controller);
        if (backup.collectFromController() != 1) {
            state.SkipWithError("the collecting failed");
        }
        benchmark::DoNotOptimize(backup.configData);
    }
}

void collectBarely(benchmark::State &state)
{
    FreeChannel channel = channelOf(state);
    for (auto _ : state) {
        BareLoops::collect(&channel, chunksOf(state));
    }
}

template <typename Save>
void saveRepeatedly(benchmark::State &state, Save save)
{
    const TargetFile target;
    for (auto _ : state) {
        if (!save(target.path())) {
            state.SkipWithError("the save failed");
        }
        state.PauseTiming();
        target.remove();
        state.ResumeTiming();
    }
}

void save(benchmark::State &state)
{
    FreeChannel channel = channelOf(state);
    saveRepeatedly(state, [&](const QString &path) {
        return ConfigurationDownload(&channel).run(path) == ConfigurationDownload::success;
    });
}

// The bare loop, plus writing the bytes once.
void saveBarely(benchmark::State &state)
{
    FreeChannel channel = channelOf(state);
    const QByteArray bytes = SampleData::bytes(sizeOf(state));
    saveRepeatedly(state, [&](const QString &path) {
        BareLoops::download(&channel, chunksOf(state));
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    });
}

// The bare loop, plus opening, appending to and closing the file for every chunk.
void saveByChunks(benchmark::State &state)
{
    FreeChannel channel = channelOf(state);
    const QByteArray bytes = SampleData::bytes(TransferEncoding::chunkSize);
    saveRepeatedly(state, [&](const QString &path) {
        BareLoops::download(&channel, chunksOf(state));
        const QByteArray name = path.toLatin1();
        const auto size = static_cast<std::size_t>(bytes.size());
        bool isWritten = true;
        for (int chunk = 0; chunk < chunksOf(state) && isWritten; ++chunk) {
            std::FILE *file = std::fopen(name.constData(), "ab");
            std::setvbuf(file, nullptr, _IONBF, 0);
            isWritten = std::fwrite(bytes.constData(), 1, size, file) == size;
            std::fclose(file);
        }
        return isWritten;
    });
}

void uploadFile(benchmark::State &state)
{
    FreeChannel channel;
    const TargetFile source;
    QFile file(source.path());
    if (!file.open(QIODevice::WriteOnly) || file.write(SampleData::bytes(sizeOf(state))) < 0) {
        state.SkipWithError("the file cannot be made");
        return;
    }
    file.close();
    for (auto _ : state) {
        channel.sendCommand("system upload cancel");
        if (ConfigurationUpload(&channel).run(source.path()) != ConfigurationUpload::success) {
            state.SkipWithError("the upload failed");
        }
    }
}

void uploadBackup(benchmark::State &state)
{
    FreeChannel channel;
    BackendVersions controller = SampleData::versions();
    FullBackup backup(&channel, &controller);
    backup.configData = SampleData::bytes(sizeOf(state));
    for (auto _ : state) {
        backup.uploadConfigData();
    }
}

void uploadBarely(benchmark::State &state)
{
    FreeChannel channel;
    for (auto _ : state) {
        BareLoops::upload(&channel, chunksOf(state));
    }
}

BENCHMARK(collect)->Name("collect/ours")->Arg(16)->Unit(benchmark::kMillisecond);
BENCHMARK(collectBarely)->Name("collect/bare")->Arg(16)->Unit(benchmark::kMillisecond);
BENCHMARK(save)->Name("save/ours")->Arg(16)->Unit(benchmark::kMillisecond);
BENCHMARK(saveBarely)->Name("save/bare")->Arg(16)->Unit(benchmark::kMillisecond);
BENCHMARK(saveByChunks)->Name("save/bychunks")->Arg(16)->Unit(benchmark::kMillisecond);
BENCHMARK(uploadFile)->Name("uploadfile/ours")->Arg(16)->Unit(benchmark::kMillisecond);
BENCHMARK(uploadBackup)->Name("uploadbackup/ours")->Arg(16)->Unit(benchmark::kMillisecond);
BENCHMARK(uploadBarely)->Name("upload/bare")->Arg(16)->Unit(benchmark::kMillisecond);

} // namespace
