// Loads a plug-in, as the first thing that this process loads, and tells what that cost in
// nanoseconds of processor time:
//
//     veltra4-loadprobe PATH

#include "bench/stopwatch.h"

#include <QApplication>
#include <QPluginLoader>

#include <cstdio>

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    Stopwatch stopwatch;
    stopwatch.start();
    QPluginLoader loader(arguments.value(1));
    const QObject *plugin = loader.instance();
    const double time = stopwatch.stop();
    if (plugin == nullptr) {
        std::fprintf(stderr, "%s\n", qPrintable(loader.errorString()));
        return 1;
    }
    std::printf("%.0f\n", time * 1e9);
    return 0;
}
