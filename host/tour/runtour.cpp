#include "host/tour/runtour.h"

#include "host/hostsession.h"
#include "host/tour/chapters.h"
#include "host/tour/stepfailed.h"
#include "host/tour/tour.h"

#include <QApplication>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <memory>

namespace {

constexpr int failed = 1;

QtMessageHandler defaultMessageHandler = nullptr;

const char *const homeName = "home";
// Says that the home below a folder is a tour's, so that nobody's own one is ever removed.
const char *const markName = "home/.veltra4-tour";

// The platform without a display warns each time a window is raised or resized.
void dropPlatformWarnings(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!message.startsWith(QLatin1String("This plugin does not support"))) {
        defaultMessageHandler(type, context, message);
    }
}

bool removeFormerTour(const QDir &folder)
{
    const QStringList pictures =
        folder.entryList({QStringLiteral("[0-9][0-9]-*.png")}, QDir::Files);
    for (const QString &picture : pictures) {
        QFile::remove(folder.filePath(picture));
    }
    return !folder.exists(homeName) || QDir(folder.filePath(homeName)).removeRecursively();
}

bool makeHome(const QDir &folder)
{
    QFile mark(folder.filePath(markName));
    return folder.mkpath(homeName) && mark.open(QIODevice::WriteOnly);
}

void visitChapters(Tour &tour)
{
    Chapters::host(tour);
    Chapters::list(tour);
    Chapters::create(tour);
    Chapters::edit(tour);
    Chapters::lock(tour);
    Chapters::files(tour);
    Chapters::extract(tour);
    Chapters::extremes(tour);
}

int report(const StepFailed &failure, const Tour *tour)
{
    const QString step = tour ? tour->currentStep() : QString();
    std::fprintf(stderr, "veltra4-host: the tour failed at \"%s\": %s\n", qPrintable(step),
                 qPrintable(failure.reason().simplified()));
    return failed;
}

} // namespace

bool prepareTour(const QString &folder, QString *problem)
{
    const QDir directory(folder);
    if (directory.exists(homeName) && !directory.exists(markName)) {
        *problem = QStringLiteral("\"%1\" was not made by a tour and is left alone.")
                       .arg(directory.filePath(homeName));
        return false;
    }
    if (!directory.mkpath(QStringLiteral(".")) || !removeFormerTour(directory)
        || !makeHome(directory)) {
        *problem = QStringLiteral("\"%1\" cannot be written.").arg(folder);
        return false;
    }
    defaultMessageHandler = qInstallMessageHandler(dropPlatformWarnings);
    qputenv("HOME", QFile::encodeName(QDir(directory.filePath(homeName)).absolutePath()));
    return true;
}

int runTour(HostSession &session, SimulatedLink &link, const QDir &folder)
{
    std::unique_ptr<Tour> tour;
    try {
        tour = std::make_unique<Tour>(session, link, folder);
        visitChapters(*tour);
    } catch (const StepFailed &failure) {
        return report(failure, tour.get());
    }
    std::printf("%d pictures and transcript.txt in %s\n", tour->pictureCount(),
                qPrintable(folder.absolutePath()));
    return 0;
}
