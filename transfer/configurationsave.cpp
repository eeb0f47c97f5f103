#include "transfer/configurationsave.h"

#include "channel/identifiers.h"
#include "channel/replybuffer.h"
#include "transfer/configurationdownload.h"
#include "transfer/datestamp.h"
#include "widgets/messagebox.h"
#include "widgets/waitcursor.h"

#include <QThread>

#include <cstdio>

#include <unistd.h>

namespace {

constexpr int slowCommandTimeoutMs = 20000;

void keepPreviousFile(const QByteArray &name)
{
    if (::access(name.constData(), F_OK) == 0) {
        const QByteArray backupName = name + ".bak";
        ::unlink(backupName.constData());
        std::rename(name.constData(), backupName.constData());
    }
}

} // namespace

ConfigurationSave::ConfigurationSave(const Controller &controller, QWidget *dialog)
    : m_controller(controller)
    , m_dialog(dialog)
{
}

void ConfigurationSave::run(const QStringList &identifiers, const QString &fileName)
{
    WaitCursor cursor;
    keepPreviousFile(nameOnDisk(fileName));
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

QString ConfigurationSave::activeConfiguration()
{
    ReplyBuffer active;
    const bool isAnswered =
        m_controller.reportUnless(m_controller.activeConfiguration(&active),
                                  "Error save configuration: Cannot get active config");
    return isAnswered ? active.text() : QString();
}

bool ConfigurationSave::discardEarlierDownload()
{
    return m_controller.reportUnless(m_controller.cancelDownload(),
                                     "Error save configuration: Cannot send command "
                                     "(1) download. Download canceled");
}

bool ConfigurationSave::prepareCopies(const QStringList &identifiers)
{
    for (int i = 0; i < identifiers.size(); ++i) {
        QThread::yieldCurrentThread();
        const QString copy = Identifiers::newIdentifier();
        // Before it exists: a clone that is made although its answer is lost gets deleted as well.
        m_copies << copy;
        if (!clone(identifiers.at(i), i, copy) || !dateDescription()) {
            continue;
        }
        if (!prepareDownload(copy)) {
            return false;
        }
    }
    return true;
}

bool ConfigurationSave::clone(const QString &identifier, int position, const QString &copy)
{
    m_controller.setTimeout(slowCommandTimeoutMs, 1);
    if (m_controller.cloneConfiguration(copy, identifier) == Controller::Answer::None) {
        m_controller.report(
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
    if (!m_controller.reportUnless(m_controller.description(&reply),
                                   "Error save configuration: Cannot get configuration "
                                   "description")) {
        return false;
    }
    const QString description = DateStamp::removedFrom(reply.text());
    return m_controller.reportUnless(
        m_controller.setDatedDescription(description, DateStamp::today()),
        "Error save configuration: Cannot set configuration description");
}

bool ConfigurationSave::prepareDownload(const QString &copy)
{
    m_controller.setTimeout(slowCommandTimeoutMs, 1);
    return m_controller.reportUnless(m_controller.prepareDownload(copy),
                                     "Error save configuration: Cannot prepare configuration for "
                                     "download. Export aborted.");
}

ConfigurationSave::Outcome ConfigurationSave::download(const QString &fileName)
{
    ReplyBuffer isAvailable;
    if (!m_controller.isDownloadAvailable(&isAvailable)
        || isAvailable.text() != QLatin1String("yes")) {
        return {false, tr("Configuration data can not be recognized.")};
    }
    if (downloadConfigurationFile(m_controller, fileName) != 0) {
        return {false, tr("Configuration data written to the file %1 failed!\n").arg(fileName)};
    }
    return {true, tr("Configuration data successfully written to the file\n%1").arg(fileName)};
}

void ConfigurationSave::deleteCopies()
{
    for (const QString &copy : qAsConst(m_copies)) {
        if (m_controller.deleteConfiguration(copy) == Controller::Answer::None) {
            m_controller.report(
                QStringLiteral("Error save configuration: Cannot delete configuration %1.")
                    .arg(copy));
        }
    }
}

void ConfigurationSave::activate(const QString &identifier)
{
    m_controller.setTimeout(slowCommandTimeoutMs, 0);
    if (!m_controller.activate(identifier)) {
        m_controller.report(
            QStringLiteral("Error save configuration: Cannot set active configuration '%1'")
                .arg(identifier));
    }
}

void ConfigurationSave::show(const Outcome &outcome)
{
    MessageBox::outcome(m_dialog, m_dialog, outcome.isSuccess, tr("Save Configurations"),
                        outcome.text);
}
