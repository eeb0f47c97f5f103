#include "transfer/automaticbackup.h"

#include "backup/fullbackup.h"
#include "channel/replybuffer.h"
#include "transfer/collecting.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QStringList>

namespace {

bool isIdle(const Controller &controller)
{
    ReplyBuffer activity;
    // One that cannot tell counts as idle.
    return !controller.activity(&activity) || activity.utf8Text() == QLatin1String("none");
}

QString nameOfToday(const QString &hostname)
{
    const QString today = QLocale::c().toString(QDate::currentDate(), QStringLiteral("yyyy-MM-dd"));
    return QStringLiteral("backup_%1_%2.xml").arg(today, hostname);
}

void prune(const QDir &directory, const QString &hostname)
{
    const auto files = [&](const QString &filter) {
        // Wildcards in the controller's name stay as they are.
        return directory.entryList({filter.arg(hostname)}, QDir::Files | QDir::CaseSensitive,
                                   QDir::Name);
    };
    QStringList older = files(QStringLiteral("backup_*_%1.xml"));
    // The asterisk also swallows the beginning of a longer name: "lab_a" ends in "_a", too.
    const QStringList ofOthers =
        files(QStringLiteral("backup_[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]_*_%1.xml"));
    for (const QString &file : ofOthers) {
        older.removeAll(file);
    }
    // The date comes first in the name, so the last one is the newest.
    for (int i = 0; i < older.size() - 1; ++i) {
        QFile::remove(directory.filePath(older.at(i)));
    }
}

} // namespace

bool makeBackupOfTheDay(const Controller &controller, BackendVersions *versions,
                        const QString &hostVersion)
{
    ReplyBuffer hostname;
    if (!isIdle(controller) || !controller.hostname(&hostname)) {
        return false;
    }
    const QDir directory(
        QStringLiteral("%1/.ZOR/VELTRA4/%2/backup").arg(QDir::homePath(), hostVersion));
    const QString fileName = directory.filePath(nameOfToday(hostname.utf8Text()));
    directory.mkpath(directory.path());
    if (QFile::exists(fileName)) {
        return true;
    }
    prune(directory, hostname.utf8Text());
    FullBackup backup(controller, versions);
    controller.reportUnless(isCollected(&backup) && backup.writeToFile(fileName),
                            "Error execute the automatic backup");
    return false;
}
