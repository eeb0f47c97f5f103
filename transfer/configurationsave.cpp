#include "transfer/configurationsave.h"

#include "channel/hostmessages.h"
#include "channel/identifiers.h"
#include "channel/messagebox.h"
#include "channel/replybuffer.h"
#include "channel/waitcursor.h"
#include "hostapi/iomanager.h"
#include "transfer/configurationdownload.h"
#include "transfer/datestamp.h"

#include <QFile>
#include <QThread>

namespace {
constexpr int slowCommandTimeoutMs = 20000;
} // namespace

ConfigurationSave::ConfigurationSave(IOManager *channel, QWidget *dialog)
    : m_channel(channel)
    , m_dialog(dialog)
{
}

void ConfigurationSave::run(const QStringList &identifiers, const QString &fileName)
{
    WaitCursor cursor;
    keepPreviousFile(fileName);
    const QString activeBefore = activeConfiguration();
    if (!discardEarlierDownload()) {
        // No box tells the user that nothing was saved: the cursor stays as the sign of it.
        cursor.abandon();
        return;
    }
    if (!prepareCopies(identifiers)) {
        // The copies stay on the controller, so that what went wrong can still be looked at there.
        cursor.restore();
        show({false, tr("Cannot prepare configuration for download.\nExport aborted.")});
        return;
    }
    const Outcome outcome = download(fileName);
    deleteCopies();
    activate(activeBefore);
    cursor.restore();
    show(outcome);
}

void ConfigurationSave::keepPreviousFile(const QString &fileName)
{
    if (!QFile::exists(fileName)) {
        return;
    }
    const QString backupName = fileName + QLatin1String(".bak");
    QFile::remove(backupName);
    QFile::rename(fileName, backupName);
}

QString ConfigurationSave::activeConfiguration()
{
    ReplyBuffer reply;
    if (m_channel->queryString(reply.data(), "config active_config") != 0) {
        HostMessages::reportError(
            m_channel, QStringLiteral("Error save configuration: Cannot get active config"));
        return {};
    }
    return reply.text();
}

bool ConfigurationSave::discardEarlierDownload()
{
    if (m_channel->sendCommand("system download cancel") != 0) {
        HostMessages::reportError(m_channel,
                                  QStringLiteral("Error save configuration: Cannot send command "
                                                 "(1) download. Download canceled"));
        return false;
    }
    return true;
}

bool ConfigurationSave::prepareCopies(const QStringList &identifiers)
{
    for (int i = 0; i < identifiers.size(); ++i) {
        QThread::yieldCurrentThread();
        const QString copy = Identifiers::newIdentifier();
        // Before it exists: a clone that is made although its answer is lost gets deleted as well.
        m_copies << copy;
        if (!cloneConfiguration(identifiers.at(i), i, copy) || !dateDescription()) {
            continue;
        }
        if (!prepareDownload(copy)) {
            return false;
        }
    }
    return true;
}

bool ConfigurationSave::cloneConfiguration(const QString &identifier, int position,
                                           const QString &copy)
{
    ReplyBuffer reply;
    m_channel->setTimeout(0, slowCommandTimeoutMs, 1);
    if (m_channel->sendCommandReply(reply.data(), "veltra2 config clone_config %s %s",
                                    copy.toLatin1().constData(), identifier.toLatin1().constData())
        != 0) {
        HostMessages::reportError(
            m_channel,
            QStringLiteral("Error save configuration: Cannot clone configuration number %1")
                .arg(position));
        return false;
    }
    return true;
}

// The copy has become the active configuration, whose description this is.
bool ConfigurationSave::dateDescription()
{
    ReplyBuffer reply;
    if (m_channel->queryString(reply.data(), "config desc") != 0) {
        HostMessages::reportError(
            m_channel,
            QStringLiteral("Error save configuration: Cannot get configuration description"));
        return false;
    }
    const QString description = DateStamp::removedFrom(reply.text());
    if (m_channel->sendCommand("config desc \"%s %s\"", description.toLatin1().constData(),
                               DateStamp::today().toLatin1().constData())
        != 0) {
        HostMessages::reportError(
            m_channel,
            QStringLiteral("Error save configuration: Cannot set configuration description"));
        return false;
    }
    return true;
}

bool ConfigurationSave::prepareDownload(const QString &copy)
{
    m_channel->setTimeout(0, slowCommandTimeoutMs, 1);
    if (m_channel->sendCommand("system download prepare 'config' '%s'", copy.toLatin1().constData())
        != 0) {
        HostMessages::reportError(m_channel,
                                  QStringLiteral("Error save configuration: Cannot prepare "
                                                 "configuration for download. Export aborted."));
        return false;
    }
    return true;
}

ConfigurationSave::Outcome ConfigurationSave::download(const QString &fileName)
{
    ReplyBuffer reply;
    if (m_channel->queryString(reply.data(), "system download available") != 0
        || reply.text() != QLatin1String("yes")) {
        return {false, tr("Configuration data can not be recognized.")};
    }
    if (ConfigurationDownload(m_channel).run(fileName) != ConfigurationDownload::success) {
        return {false, tr("Configuration data written to the file %1 failed!\n").arg(fileName)};
    }
    return {true, tr("Configuration data successfully written to the file\n%1").arg(fileName)};
}

void ConfigurationSave::deleteCopies()
{
    for (const QString &copy : qAsConst(m_copies)) {
        ReplyBuffer reply;
        if (m_channel->sendCommandReply(reply.data(), "veltra2 config delete_config %s",
                                        copy.toLatin1().constData())
            != 0) {
            HostMessages::reportError(
                m_channel,
                QStringLiteral("Error save configuration: Cannot delete configuration %1.")
                    .arg(copy));
        }
    }
}

void ConfigurationSave::activate(const QString &identifier)
{
    m_channel->setTimeout(0, slowCommandTimeoutMs, 0);
    if (m_channel->sendCommand("config active_config %s", identifier.toLatin1().constData()) != 0) {
        HostMessages::reportError(
            m_channel,
            QStringLiteral("Error save configuration: Cannot set active configuration '%1'")
                .arg(identifier));
    }
}

void ConfigurationSave::show(const Outcome &outcome)
{
    const QString title = tr("Save Configurations");
    if (outcome.isSuccess) {
        MessageBox::information(m_dialog, m_dialog, title, outcome.text);
    } else {
        MessageBox::critical(m_dialog, m_dialog, title, outcome.text);
    }
}
