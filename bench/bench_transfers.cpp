// Collecting, saving and uploading, beside the bare loops of their commands, through a channel that
// costs next to nothing and through the cheapest one that leaves its caller.

#include "backup/fullbackup.h"
#include "bench/bareloops.h"
#include "bench/freechannel.h"
#include "bench/sampledata.h"
#include "bench/socketchannel.h"
#include "channel/controller.h"
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

/// A channel of which everything is asked for.
template <typename Channel>
struct Backend : Channel
{
    explicit Backend(const benchmark::State &state)
    {
        this->setConfigurations(configurations);
        this->setDownload(sizeOf(state));
    }
};

// What is measured goes here; a new file each time.
class TargetFile
{
public:
    QString path() const { return m_folder.filePath(QStringLiteral("target.dat")); }
    void remove() const { QFile::remove(path()); }

private:
    const QTemporaryDir m_folder;
};

template <typename Channel>
void collect(benchmark::State &state)
{
    Backend<Channel> channel(state);
    BackendVersions versions = SampleData::versions();
    for (auto _ : state) {
        FullBackup backup(&channel, &versions);
        if (backup.collectFromController() != 1) {
            state.SkipWithError("the collecting failed");
        }
        benchmark::DoNotOptimize(backup.configData);
    }
}

template <typename Channel>
void collectBarely(benchmark::State &state)
{
    Backend<Channel> channel(state);
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

template <typename Channel>
void save(benchmark::State &state)
{
    Backend<Channel> channel(state);
    saveRepeatedly(state, [&](const QString &path) {
        return downloadConfigurationFile(Controller(&channel), path) == 0;
    });
}

// The bare loop, plus writing the bytes once.
template <typename Channel>
void saveBarely(benchmark::State &state)
{
    Backend<Channel> channel(state);
    const QByteArray bytes = SampleData::bytes(sizeOf(state));
    saveRepeatedly(state, [&](const QString &path) {
        BareLoops::download(&channel, chunksOf(state));
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    });
}

// The bare loop, plus opening, appending to and closing the file for every chunk.
template <typename Channel>
void saveByChunks(benchmark::State &state)
{
    Backend<Channel> channel(state);
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

template <typename Channel>
void uploadFile(benchmark::State &state)
{
    Backend<Channel> channel(state);
    const TargetFile source;
    QFile file(source.path());
    if (!file.open(QIODevice::WriteOnly) || file.write(SampleData::bytes(sizeOf(state))) < 0) {
        state.SkipWithError("the file cannot be made");
        return;
    }
    file.close();
    for (auto _ : state) {
        channel.sendCommand("system upload cancel");
        if (uploadConfigurationFile(Controller(&channel), source.path()) != 0) {
            state.SkipWithError("the upload failed");
        }
    }
}

template <typename Channel>
void uploadBackup(benchmark::State &state)
{
    Backend<Channel> channel(state);
    BackendVersions versions = SampleData::versions();
    FullBackup backup(&channel, &versions);
    backup.configData = SampleData::bytes(sizeOf(state));
    for (auto _ : state) {
        backup.uploadConfigData();
    }
}

template <typename Channel>
void uploadBarely(benchmark::State &state)
{
    Backend<Channel> channel(state);
    for (auto _ : state) {
        BareLoops::upload(&channel, chunksOf(state));
    }
}

template <typename Channel>
void add(const std::string &channel)
{
    const auto addOne = [&channel](const char *name, void (*measure)(benchmark::State &)) {
        benchmark::RegisterBenchmark((name + ("/" + channel)).c_str(), measure)
            ->Arg(16)
            ->MeasureProcessCPUTime()
            ->Unit(benchmark::kMillisecond);
    };
    addOne("collect/ours", collect<Channel>);
    addOne("collect/bare", collectBarely<Channel>);
    addOne("save/ours", save<Channel>);
    addOne("save/bare", saveBarely<Channel>);
    addOne("save/bychunks", saveByChunks<Channel>);
    addOne("uploadfile/ours", uploadFile<Channel>);
    addOne("uploadbackup/ours", uploadBackup<Channel>);
    addOne("upload/bare", uploadBarely<Channel>);
}

const bool areAdded = [] {
    add<FreeChannel>("free");
    add<SocketChannel>("socket");
    return true;
}();

} // namespace
