#include "host/tour/chapters.h"

#include "host/simulatedlink.h"
#include "host/tour/listvisit.h"

#include <QDir>

namespace {

void start(Tour &tour)
{
    tour.step(QStringLiteral("The host before it has asked the controller anything"));
    tour.expectEqual(tour.windowText(QStringLiteral("label_hostName")), QStringLiteral("\u2014"),
                     QStringLiteral("the controller's name"));
    tour.pictureWindow(QStringLiteral("host-before-contact"));

    tour.step(QStringLiteral("The host at its start"));
    tour.startModule();
    tour.expectAction(QStringLiteral("&VELTRA4"), QStringLiteral("&Configurations"));
    tour.pictureWindow(QStringLiteral("host"));
}

void waitForAutomaticBackup(Tour &tour)
{
    tour.step(QStringLiteral("The automatic backup of the day"));
    const QStringList filter{QStringLiteral("backup_*_%1.xml")
                                 .arg(QString::fromLatin1(tour.controllerState().hostName))};
    const QDir folder(QDir::home().filePath(QStringLiteral(".ZOR/VELTRA4/v4.12.3/backup")));
    const auto wait = [&] {
        tour.waitUntil(QStringLiteral("there is a backup of today"), [&] {
            return QDir(folder.path()).entryList(filter, QDir::Files).size() == 1;
        });
    };
    tour.pictureWindowDuring("system download 100", QStringLiteral("host-during-automatic-backup"),
                             wait);
    tour.note(QStringLiteral("file ") + QDir(folder.path()).entryList(filter, QDir::Files).first());
    tour.pictureWindow(QStringLiteral("host-after-automatic-backup"));
}

} // namespace

void Chapters::host(Tour &tour)
{
    start(tour);
    waitForAutomaticBackup(tour);
}
