#include "bench/childprocess.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>

#include <sys/resource.h>

namespace {

double seconds(const timeval &time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

// Of all children that have ended so far.
double childrensCpuTime()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

} // namespace

ChildProcess::Outcome ChildProcess::run(const QString &program, const QStringList &arguments)
{
    const double before = childrensCpuTime();
    QProcess process;
    process.start(program, arguments);
    Outcome outcome;
    outcome.isSuccess = process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
    outcome.cpuTime = childrensCpuTime() - before;
    outcome.output = process.readAllStandardOutput();
    return outcome;
}

ChildProcess::Outcome ChildProcess::runProbe(const QString &name, const QStringList &arguments)
{
    return run(QDir(QCoreApplication::applicationDirPath()).filePath(name), arguments);
}
