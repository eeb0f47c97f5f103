#include "host/darkcolours.h"
#include "host/hostoptions.h"
#include "host/hostsession.h"
#include "host/networklink.h"
#include "host/simulatedlink.h"
#include "host/tour/runtour.h"
#include "projectversion.h"

#include <QApplication>
#include <QDir>
#include <QFont>
#include <QIcon>

#include <cstdio>
#include <functional>

namespace {

constexpr int wrongUsage = 2;
constexpr int pictureFontSize = 10; // points

int refuse(const QString &problem)
{
    std::fprintf(stderr, "veltra4-host: %s\n", qPrintable(problem.simplified()));
    return wrongUsage;
}

void nameApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("veltra4-host"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELTRA4_VERSION));
}

// Read before there is a display, so that also a machine without one tells what is wrong.
std::optional<HostOptions> readOptions(int argc, char *argv[], QString *problem)
{
    const QCoreApplication application(argc, argv);
    return parseHostOptions(QCoreApplication::arguments(), problem);
}

bool prepare(SimulatedLink &link, const HostOptions &options, QString *problem)
{
    for (const QString &rule : options.failureRules) {
        if (!link.faults().add(rule, problem)) {
            return false;
        }
    }
    link.setLatency(options.latencyMs);
    return options.stateFile.isEmpty() || link.keepStateIn(options.stateFile, problem);
}

void useFontSize(int points)
{
    QFont font = QApplication::font();
    font.setPointSize(points);
    QApplication::setFont(font);
}

void chooseFont(const HostOptions &options)
{
    if (options.fontSize > 0) {
        useFontSize(options.fontSize);
    } else if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
        // No desktop where a user has chosen one; Qt's own is too large for pictures.
        useFontSize(pictureFontSize);
    }
}

// Opens the window and lets @p use decide what happens in it; gives the program's exit code.
int runSession(ControllerLink &link, const HostOptions &options,
               const std::function<int(HostSession &)> &use)
{
    QString problem;
    HostSession session(link, options);
    if (!session.load(&problem)) {
        return refuse(problem);
    }
    session.window().show();
    return use(session);
}

// The window is there before the first question to the controller, which may go unanswered.
int leaveToTheUser(HostSession &session)
{
    QObject::connect(&session.window(), &MainWindow::appeared, &session, &HostSession::start);
    return QApplication::exec();
}

int runSimulated(const HostOptions &options)
{
    QString problem;
    const bool isTour = !options.tourDirectory.isEmpty();
    if (isTour && !prepareTour(options.tourDirectory, &problem)) {
        return refuse(problem);
    }
    SimulatedLink link;
    if (!prepare(link, options, &problem)) {
        return refuse(problem);
    }
    const auto makeTour = [&](HostSession &session) {
        return runTour(session, link, QDir(options.tourDirectory));
    };
    return isTour ? runSession(link, options, makeTour) : runSession(link, options, leaveToTheUser);
}

int runConnected(const HostOptions &options)
{
    NetworkLink link(*options.controller);
    return runSession(link, options, leaveToTheUser);
}

} // namespace

int main(int argc, char *argv[])
{
    nameApplication();
    QString problem;
    const std::optional<HostOptions> options = readOptions(argc, argv, &problem);
    if (!options) {
        return refuse(problem);
    }
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    // Qt is not shown the arguments: one of its own options is called "plugin", too.
    int programNameOnly = 1;
    const QApplication application(programNameOnly, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/host/veltra4-host.png")));
    if (options->isDark) {
        useDarkColours();
    }
    chooseFont(*options);
    return options->controller ? runConnected(*options) : runSimulated(*options);
}
