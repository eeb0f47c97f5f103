#include "bench/processmemory.h"

#include <QByteArray>
#include <QFile>

namespace {

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

} // namespace

qint64 ProcessMemory::now()
{
    return memory("VmRSS");
}

qint64 ProcessMemory::peak()
{
    return memory("VmHWM");
}

void ProcessMemory::forgetPeak()
{
    QFile references(QStringLiteral("/proc/self/clear_refs"));
    if (!references.open(QIODevice::WriteOnly) || references.write("5") != 1) {
        qFatal("the system does not forget the peak of a process's memory");
    }
}
