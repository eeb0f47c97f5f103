#include "tests/sweep/backuprules.h"

#include "tests/endtoend/transferfiles.h"
#include "tests/sweep/commonrules.h"
#include "tests/sweep/rehearsal.h"

namespace {

// Nothing is reported of any of these: whoever wants the backup says that there is none.
constexpr Rule backupRules[] = {
    {"system hostname", nullptr, Then::Ends},
    {"system controller_serial", nullptr, Then::Ends},
    {"cascade number_of_connected_slaves", nullptr, Then::Ends},
    {"cascade connected_slave d%02d", nullptr, Then::Ends},
    {"system net", nullptr, Then::Ends},
    {"system controller_embedded", nullptr, Then::Ends},
    {"system domainname", nullptr, Then::Ends},
    {"system nameserver", nullptr, Then::Ends},
    {"system ntp_server", nullptr, Then::Ends},
    {"config active_config", nullptr, Then::Ends},
    {"system download cancel", nullptr, Then::Ends},
    {"config number_of_configs", nullptr, Then::Ends},
    {"system download prepare 'config' '__base'", nullptr, Then::Ends},
    {"config config t%02d", nullptr, Then::NextItem},
    {"system download prepare 'config' '%s'"},
    {"system download %d", nullptr, Then::Ends},
};

bool askText(Rehearsal &rehearsal, const QByteArray &query, QString *text)
{
    QByteArray answer;
    if (!rehearsal.ask(query, &answer)) {
        return false;
    }
    *text = QString::fromUtf8(answer);
    return true;
}

bool rehearseNetwork(Rehearsal &rehearsal, BackupContents *contents)
{
    bool isEmbedded = false;
    if (!askText(rehearsal, "system net", &contents->net)
        || !rehearsal.askTruth("system controller_embedded", &isEmbedded)) {
        return false;
    }
    return !isEmbedded
        || (askText(rehearsal, "system domainname", &contents->domain)
            && askText(rehearsal, "system nameserver", &contents->nameServer)
            && askText(rehearsal, "system ntp_server", &contents->ntpServer));
}

bool rehearsePreparation(Rehearsal &rehearsal)
{
    int count = 0;
    if (!rehearsal.send("system download cancel")
        || !rehearsal.askCount("config number_of_configs", &count) || count == 0) {
        return false;
    }
    if (!rehearsal.send("system download prepare 'config' '__base'")) {
        rehearsal.send("system download cancel");
        return false;
    }
    for (int slot = 1; slot <= count; ++slot) {
        QString identifier;
        if (askText(rehearsal, numbered("config config t", slot), &identifier)) {
            rehearsal.send("system download prepare 'config' '" + identifier.toLatin1() + '\'');
        }
    }
    return true;
}

QString element(const char *name, const QString &text)
{
    return QStringLiteral("<%1>%2</%1>").arg(QString::fromLatin1(name), text.toHtmlEscaped());
}

} // namespace

BackupContents BackupContents::of(const ControllerState &state)
{
    BackupContents contents;
    contents.name = QString::fromLatin1(state.hostName);
    contents.serial = QString::fromLatin1(state.serial);
    for (const CascadeSlave &slave : state.slaves) {
        if (slave.isConnected) {
            contents.slaves << QString::fromLatin1(slave.name);
        }
    }
    contents.net = QString::fromLatin1(state.net);
    contents.domain = QString::fromLatin1(state.domainName);
    contents.nameServer = QString::fromLatin1(state.nameServer);
    contents.ntpServer = QString::fromLatin1(state.ntpServer);
    contents.activeConfig = QString::fromLatin1(state.activeIdentifier);
    contents.configData = TransferFiles::wholeArchive(state);
    return contents;
}

QByteArray BackupContents::document() const
{
    QString slaveElements;
    for (const QString &slave : slaves) {
        slaveElements += element("slave", slave);
    }
    const QString document = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ZOR><ZORFileInfo>"
        + element("filetype", "ZORBackup") + element("version", "v1.0.0")
        + "</ZORFileInfo><ZORControllerInfo>" + element("name", name) + element("serial", serial)
        + element("ptVersion", "v4.2.0") + element("ctVersion", "v4.1.0")
        + element("systemModel", "XQU") + "</ZORControllerInfo><ZORBackupInfo>"
        + element("type", "XQUFull") + element("version", "v1.0.0")
        + element("creationDate", "2024-03-05T14:07:09") + "</ZORBackupInfo><ZORBackupData>"
        + element("net", net) + element("domain", domain) + element("nameServer", nameServer)
        + element("ntpServer", ntpServer) + "<slaves>" + slaveElements + "</slaves>"
        + element("activeConfig", activeConfig) + "<configData><![CDATA["
        + QString::fromLatin1(configData.toBase64()) + "]]></configData></ZORBackupData></ZOR>\n";
    return document.toUtf8();
}

std::optional<BackupContents> rehearseCollection(Rehearsal &rehearsal)
{
    rehearsal.follow(backupRules);
    BackupContents contents;
    QByteArrayList slaves;
    const bool isCollected = askText(rehearsal, "system hostname", &contents.name)
        && askText(rehearsal, "system controller_serial", &contents.serial)
        && rehearsal.askList("cascade number_of_connected_slaves", "cascade connected_slave d",
                             &slaves)
        && rehearseNetwork(rehearsal, &contents)
        && askText(rehearsal, "config active_config", &contents.activeConfig)
        && rehearsePreparation(rehearsal)
        && rehearseDownload(rehearsal, &contents.configData, false);
    for (const QByteArray &slave : qAsConst(slaves)) {
        contents.slaves << QString::fromUtf8(slave);
    }
    return isCollected ? std::make_optional(contents) : std::nullopt;
}
