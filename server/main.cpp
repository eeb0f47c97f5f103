#include "server/controllerserver.h"
#include "server/servedcontroller.h"
#include "server/serveroptions.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

constexpr int wrongUsage = 2;
constexpr int msPerSecond = 1000;

int refuse(const QString &problem)
{
    std::fprintf(stderr, "veltra2-simulator: %s\n", qPrintable(problem.simplified()));
    return wrongUsage;
}

bool prepare(ServedController &controller, const ServerOptions &options, QString *problem)
{
    for (const QString &rule : options.failureRules) {
        if (!controller.faults().add(rule, problem)) {
            return false;
        }
    }
    controller.setLatency(options.latencyMs);
    return options.stateFile.isEmpty() || controller.keepStateIn(options.stateFile, problem);
}

int serve(const ServerOptions &options)
{
    QString problem;
    ServedController controller;
    if (!prepare(controller, options, &problem)) {
        return refuse(problem);
    }
    ClientLimits limits;
    limits.idleMs = options.idleLimitSeconds * msPerSecond;
    ControllerServer server(controller, limits);
    if (!server.listen(options.address, options.port, &problem)) {
        return refuse(problem);
    }
    std::printf("listening on %s\n", qPrintable(server.address().toText()));
    std::fflush(stdout);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("veltra2-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELTRA4_VERSION));
    QString problem;
    const std::optional<ServerOptions> options =
        parseServerOptions(QCoreApplication::arguments(), &problem);
    return options ? serve(*options) : refuse(problem);
}
