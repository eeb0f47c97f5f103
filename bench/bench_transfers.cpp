// Collecting, saving and uploading, beside the bare loops of their commands, through a channel that
// costs next to nothing and through the cheapest one that leaves its caller.

#include "backup/fullbackup.h"
#include "bench/bareloops.h"
#include "bench/freechannel.h"
#include "bench/operations.h"
#include "bench/sampledata.h"
#include "bench/socketchannel.h"
#include "bench/turns.h"
#include "channel/controller.h"
#include "channel/transferencoding.h"
#include "transfer/configurationdownload.h"
#include "transfer/configurationupload.h"

#include <QFile>

#include <cstdio>
#include <memory>

namespace {

constexpr int configurations = 10;

/// A channel of which everything is asked for.
template <typename Channel>
struct Backend : Channel
{
    explicit Backend(int bytes)
        : size(bytes)
    {
        this->setConfigurations(configurations);
        this->setDownload(size);
    }

    int chunks() const
    {
        return (size + TransferEncoding::chunkSize - 1) / TransferEncoding::chunkSize;
    }

    const int size;
};

template <typename Channel>
Operations::Operation collect(int size)
{
    return Operations::timed([channel = std::make_shared<Backend<Channel>>(size)] {
        BackendVersions versions = SampleData::versions();
        FullBackup backup(channel.get(), &versions);
        Operations::require(backup.collectFromController() == 1);
    });
}

template <typename Channel>
Operations::Operation collectBarely(int size)
{
    return Operations::timed([channel = std::make_shared<Backend<Channel>>(size)] {
        BareLoops::collect(channel.get(), channel->chunks());
    });
}

// A new file each time. Removing the old one does not count.
template <typename Save>
Operations::Operation saveAnew(Save save)
{
    const QString path = QStringLiteral("target.dat");
    const auto operation = Operations::timed([=] { Operations::require(save(path)); });
    return [=] {
        QFile::remove(path);
        return operation();
    };
}

template <typename Channel>
Operations::Operation save(int size)
{
    return saveAnew([channel = std::make_shared<Backend<Channel>>(size)](const QString &path) {
        return downloadConfigurationFile(Controller(channel.get()), path) == 0;
    });
}

// The bare loop, plus writing the bytes once.
template <typename Channel>
Operations::Operation saveBarely(int size)
{
    return saveAnew([channel = std::make_shared<Backend<Channel>>(size),
                     bytes = SampleData::bytes(size)](const QString &path) {
        BareLoops::download(channel.get(), channel->chunks());
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    });
}

bool append(const char *path, const QByteArray &bytes)
{
    std::FILE *file = std::fopen(path, "ab");
    std::setvbuf(file, nullptr, _IONBF, 0);
    const auto size = static_cast<std::size_t>(bytes.size());
    const bool isWritten = std::fwrite(bytes.constData(), 1, size, file) == size;
    std::fclose(file);
    return isWritten;
}

// The bare loop, plus opening, appending to and closing the file for every chunk.
template <typename Channel>
Operations::Operation saveByChunks(int size)
{
    return saveAnew([channel = std::make_shared<Backend<Channel>>(size),
                     bytes = SampleData::bytes(TransferEncoding::chunkSize)](const QString &path) {
        BareLoops::download(channel.get(), channel->chunks());
        const QByteArray name = path.toLatin1();
        bool isWritten = true;
        for (int chunk = 0; chunk < channel->chunks() && isWritten; ++chunk) {
            isWritten = append(name.constData(), bytes);
        }
        return isWritten;
    });
}

template <typename Channel>
Operations::Operation uploadFile(int size)
{
    const QString path = QStringLiteral("source-%1.dat").arg(size);
    QFile file(path);
    Operations::require(file.open(QIODevice::WriteOnly)
                        && file.write(SampleData::bytes(size)) == size);
    return Operations::timed([channel = std::make_shared<Backend<Channel>>(size), path] {
        channel->sendCommand("system upload cancel");
        Operations::require(uploadConfigurationFile(Controller(channel.get()), path) == 0);
    });
}

template <typename Channel>
Operations::Operation uploadBackup(int size)
{
    return Operations::timed(
        [channel = std::make_shared<Backend<Channel>>(size), bytes = SampleData::bytes(size)] {
            BackendVersions versions = SampleData::versions();
            FullBackup backup(channel.get(), &versions);
            backup.configData = bytes;
            Operations::require(backup.uploadConfigData() == 0);
        });
}

template <typename Channel>
Operations::Operation uploadBarely(int size)
{
    return Operations::timed([channel = std::make_shared<Backend<Channel>>(size)] {
        BareLoops::upload(channel.get(), channel->chunks());
    });
}

// In batches of a thousand chunks, a few milliseconds.
template <typename Channel>
bool addAll(const std::string &suffix)
{
    const auto add = [&suffix](const char *name, const Operations::Maker &maker) {
        return Operations::add(name + suffix, maker);
    };
    const auto turns = [&suffix](std::vector<std::string> names) {
        for (std::string &name : names) {
            name += suffix;
        }
        return takeTurns(names, {1000 * TransferEncoding::chunkSize}, 31);
    };
    return add("collect", collect<Channel>) && add("collect-loop", collectBarely<Channel>)
        && add("save", save<Channel>) && add("save-loop", saveBarely<Channel>)
        && add("save-opens", saveByChunks<Channel>) && add("upload-file", uploadFile<Channel>)
        && add("upload-backup", uploadBackup<Channel>) && add("upload-loop", uploadBarely<Channel>)
        && turns({"collect", "collect-loop"}) && turns({"save", "save-loop", "save-opens"})
        && turns({"upload-file", "upload-loop"}) && turns({"upload-backup", "upload-loop"});
}

const bool areAdded = addAll<FreeChannel>("") && addAll<SocketChannel>("-socket");

} // namespace
