#include "transfer/automaticbackup.h"

#include "backup/fullbackup.h"
#include "channel/hostmessages.h"
#include "channel/replybuffer.h"
#include "hostapi/iomanager.h"
#include "transfer/collecting.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QStringList>

AutomaticBackup::AutomaticBackup(IOManager *channel, BackendVersions *versions,
                                 const QString &hostVersion)
    : m_channel(channel)
    , m_versions(versions)
    , m_directory(QStringLiteral("%1/.ZOR/VELTRA4/%2/backup").arg(QDir::homePath(), hostVersion))
{
}

AutomaticBackup::Result AutomaticBackup::run()
{
    if (!isControllerIdle() || !askControllerName()) {
        return Result::NotDue;
    }
    const QString fileName = fileNameOfToday();
    QDir().mkpath(m_directory);
    if (QFile::exists(fileName)) {
        return Result::AlreadyMade;
    }
    prune();
    if (!collectAndWrite(fileName)) {
        HostMessages::reportError(m_channel, QStringLiteral("Error execute the automatic backup"));
        return Result::Failed;
    }
    return Result::Made;
}

bool AutomaticBackup::isControllerIdle()
{
    ReplyBuffer reply;
    // One that cannot tell counts as idle.
    return m_channel->queryString(reply.data(), "status active") != 0
        || reply.utf8Text() == QLatin1String("none");
}

bool AutomaticBackup::askControllerName()
{
    ReplyBuffer reply;
    const bool isAnswered = m_channel->queryString(reply.data(), "system hostname") == 0;
    m_controllerName = reply.utf8Text();
    return isAnswered;
}

QString AutomaticBackup::fileNameOfToday() const
{
    const QString today = QLocale::c().toString(QDate::currentDate(), QStringLiteral("yyyy-MM-dd"));
    return QStringLiteral("%1/backup_%2_%3.xml").arg(m_directory, today, m_controllerName);
}

void AutomaticBackup::prune() const
{
    const QDir directory(m_directory);
    const auto files = [this, &directory](const QString &filter) {
        return directory.entryList({filter.arg(m_controllerName)},
                                   QDir::Files | QDir::CaseSensitive, QDir::Name);
    };
    // Wildcards in the controller's name stay as they are.
    QStringList older = files(QStringLiteral("backup_*_%1.xml"));
    // The asterisk also swallows the beginning of a longer name: "lab_a" ends in "_a", too.
    const QStringList ofLongerNames = files(QStringLiteral("backup_*_*_%1.xml"));
    for (const QString &file : ofLongerNames) {
        older.removeAll(file);
    }
    // The date comes first in the name, so the last one is the newest.
    for (int i = 0; i < older.size() - 1; ++i) {
        QFile::remove(directory.filePath(older.at(i)));
    }
}

bool AutomaticBackup::collectAndWrite(const QString &fileName)
{
    FullBackup backup(m_channel, m_versions);
    return isCollected(&backup) && backup.writeToFile(fileName);
}
