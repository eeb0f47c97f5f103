#include "tests/backup/samplebackup.h"

#include "backup/documentproblem.h"

#include <QFile>
#include <QTest>

namespace {

QString places(const Version &version)
{
    return QStringLiteral("%1.%2.%3").arg(version.major).arg(version.minor).arg(version.micro);
}

} // namespace

BackendVersions SampleBackup::versions()
{
    return {{4, 2, 1}, {1, 27, 0}, {3, 5, -1}, QStringLiteral("Model 5")};
}

void SampleBackup::fill(FullBackup *backup)
{
    backup->name = QStringLiteral("tracker-7");
    backup->serial = QStringLiteral("00001234");
    backup->ptVersion = {4, 2, 1};
    backup->ctVersion = {3, 5, -1};
    backup->systemModel = QStringLiteral("Model 5");
    backup->slaves = QStringList{QStringLiteral("slave-a"), QStringLiteral("slave-b")};
    backup->net = QStringLiteral("192.168.0.7/24 gw 192.168.0.1");
    backup->domain = QStringLiteral("example.com");
    backup->nameServer = QStringLiteral("192.168.0.2");
    backup->ntpServer = QStringLiteral("192.168.0.3");
    backup->activeConfig = QStringLiteral("config20240305140709123");
    backup->configData = QByteArray("\x00\x01\xfe\xff configurations", 19);
}

SampleBackup::Filled::Filled()
    : FullBackup(nullptr, nullptr)
{
    fill(this);
}

QByteArray SampleBackup::document()
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<ZOR>\n"
           "\t<ZORFileInfo>\n"
           "\t\t<filetype>ZORBackup</filetype>\n"
           "\t\t<version>v1.0.0</version>\n"
           "\t</ZORFileInfo>\n"
           "\t<ZORControllerInfo>\n"
           "\t\t<name>tracker-7</name>\n"
           "\t\t<serial>00001234</serial>\n"
           "\t\t<ptVersion>v4.2.1</ptVersion>\n"
           "\t\t<ctVersion>v3.5</ctVersion>\n"
           "\t\t<systemModel>Model 5</systemModel>\n"
           "\t</ZORControllerInfo>\n"
           "\t<ZORBackupInfo>\n"
           "\t\t<type>XQUFull</type>\n"
           "\t\t<version>v1.0.0</version>\n"
           "\t\t<creationDate>2024-03-05T14:07:09</creationDate>\n"
           "\t</ZORBackupInfo>\n"
           "\t<ZORBackupData>\n"
           "\t\t<net>192.168.0.7/24 gw 192.168.0.1</net>\n"
           "\t\t<domain>example.com</domain>\n"
           "\t\t<nameServer>192.168.0.2</nameServer>\n"
           "\t\t<ntpServer>192.168.0.3</ntpServer>\n"
           "\t\t<slaves>\n"
           "\t\t\t<slave>slave-a</slave>\n"
           "\t\t\t<slave>slave-b</slave>\n"
           "\t\t</slaves>\n"
           "\t\t<activeConfig>config20240305140709123</activeConfig>\n"
           "\t\t<configData><![CDATA[AAH+/yBjb25maWd1cmF0aW9ucw==]]></configData>\n"
           "\t</ZORBackupData>\n"
           "</ZOR>\n";
}

QByteArray SampleBackup::documentWith(const QByteArray &before, const QByteArray &after)
{
    QByteArray changed = document();
    const int position = changed.indexOf(before);
    if (position < 0) {
        qFatal("The sample document does not have %s", before.constData());
    }
    return changed.replace(position, before.size(), after);
}

QString SampleBackup::describe(const FullBackup &backup)
{
    const QStringList lines{backup.name,
                            backup.serial,
                            places(backup.ptVersion),
                            places(backup.ctVersion),
                            backup.systemModel,
                            backup.slaves.join(QLatin1Char(',')),
                            backup.net,
                            backup.domain,
                            backup.nameServer,
                            backup.ntpServer,
                            backup.activeConfig,
                            QString::fromLatin1(backup.configData.toHex())};
    return lines.join(QLatin1Char('\n'));
}

QString SampleBackup::describe(const DocumentProblem &problem)
{
    return QStringLiteral("%1:%2 %3").arg(problem.line).arg(problem.column).arg(problem.text);
}

QString SampleBackup::description()
{
    return describe(Filled());
}

QString SampleBackup::makeFile(const QString &folder, const QByteArray &content)
{
    static int number = 0;
    QString path = QStringLiteral("%1/document-%2.xml").arg(folder).arg(++number);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("Cannot make %s", qPrintable(path));
    }
    return path;
}

QByteArray SampleBackup::contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
