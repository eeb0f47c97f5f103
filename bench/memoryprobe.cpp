// Does one thing with so much data and tells how far the memory of this process grew meanwhile:
//
//     veltra4-memoryprobe write|read|save MEBIBYTES PATH

#include "backup/fullbackup.h"
#include "bench/freechannel.h"
#include "bench/sampledata.h"
#include "channel/controller.h"
#include "transfer/configurationdownload.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

#include <cstdio>

namespace {

// In bytes; "VmRSS" is what is in memory now, "VmHWM" the most that ever was.
qint64 memory(const QByteArray &name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        qFatal("the system does not tell the memory of a process");
    }
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(name + ':')) {
            return line.simplified().split(' ').value(1).toLongLong() * 1024;
        }
    }
    qFatal("the system does not tell %s", name.constData());
}

bool write(int size, const QString &path)
{
    FullBackup backup(nullptr, nullptr);
    SampleData::fill(&backup, size);
    return backup.writeToFile(path);
}

bool read(int size, const QString &path)
{
    FullBackup backup(nullptr, nullptr);
    return backup.readFromFile(path) && backup.configData.size() == size;
}

bool save(int size, const QString &path)
{
    FreeChannel channel;
    channel.setDownload(size);
    return downloadConfigurationFile(Controller(&channel), path) == 0;
}

bool run(const QString &what, int size, const QString &path)
{
    if (what == QLatin1String("write")) {
        return write(size, path);
    }
    return what == QLatin1String("read") ? read(size, path) : save(size, path);
}

// The program's own code gets into memory when it is first used, whatever the size of the data.
void warmUp(const QString &path)
{
    write(1, path);
    read(1, path);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int size = arguments.value(2).toInt() * 1024 * 1024;
    warmUp(arguments.value(3) + QStringLiteral(".small"));
    const qint64 before = memory("VmRSS");
    if (!run(arguments.value(1), size, arguments.value(3))) {
        std::fputs("failed\n", stderr);
        return 1;
    }
    std::printf("%lld\n", memory("VmHWM") - before);
    return 0;
}
