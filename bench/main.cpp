#include <benchmark/benchmark.h>

#include <QApplication>
#include <QLoggingCategory>
#include <QTemporaryDir>

int main(int argc, char *argv[])
{
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Without a display, each window that is shown warns of what it cannot do.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
