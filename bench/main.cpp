// Measures everything, with the options of Google Benchmark; or does some operations once each, for
// valgrind or strace to count what they cost:
//
//     veltra4-bench --once NAME/SIZE...
//
// Then the working folder is where their files go, and for each operation there is a line that says
// how far memory grew.

#include "bench/operations.h"
#include "bench/processmemory.h"
#include "bench/stopwatch.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdio>

namespace {

// Returns how far memory grew at most. What is prepared is a part of that, as it holds the data;
// what happens only once is not.
qint64 doOnce(const std::string &name, int size)
{
    Operations::make(name, 1)();
    const qint64 before = ProcessMemory::now();
    const Operations::Operation operation = Operations::make(name, size);
    ProcessMemory::forgetPeak();
    CALLGRIND_ZERO_STATS;
    operation();
    CALLGRIND_DUMP_STATS;
    return ProcessMemory::peak() - before;
}

int doEachOnce(const QStringList &operations)
{
    for (const QString &operation : operations) {
        const QString name = operation.section(QLatin1Char('/'), 0, 0);
        const int size = operation.section(QLatin1Char('/'), 1).toInt();
        std::printf("%lld\n", doOnce(name.toStdString(), size));
    }
    return 0;
}

int measure(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Without a display, each window that is shown warns of what it cannot do.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.value(1) == QLatin1String("--once")) {
        return doEachOnce(arguments.mid(2));
    }
    QDir::setCurrent(home.path());
    return measure(argc, argv);
}
