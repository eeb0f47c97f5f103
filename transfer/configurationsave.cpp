#include "transfer/configurationsave.h"

#include "channel/controller.h"
#include "channel/identifiers.h"
#include "channel/replybuffer.h"
#include "transfer/configsavedlg.h"
#include "transfer/configurationdownload.h"
#include "transfer/datestamp.h"
#include "widgets/messagebox.h"
#include "widgets/waitcursor.h"

#include <QThread>

#include <cstdio>

#include <unistd.h>

namespace {

constexpr int slowCommandTimeoutMs = 20000;

struct Outcome
{
    bool isSuccess;
    QString text;
};

void keepPreviousFile(const QByteArray &name)
{
    if (::access(name.constData(), F_OK) == 0) {
        const QByteArray backupName = name + ".bak";
        ::unlink(backupName.constData());
        std::rename(name.constData(), backupName.constData());
    }
}

QString activeConfiguration(const Controller &controller)
{
    ReplyBuffer active;
    const bool isAnswered =
        controller.reportUnless(controller.activeConfiguration(&active),
                                "Error save configuration: Cannot get active config");
    return isAnswered ? active.text() : QString();
}

bool discardEarlierDownload(const Controller &controller)
{
    return controller.reportUnless(
        controller.cancelDownload(),
        "Error save configuration: Cannot send command (1) download. Download canceled");
}

bool clone(const Controller &controller, const QString &identifier, int position,
           const QString &copy)
{
    controller.setTimeout(slowCommandTimeoutMs, 1);
    if (controller.cloneConfiguration(copy, identifier) == Controller::Answer::None) {
        controller.report(
            QStringLiteral("Error save configuration: Cannot clone configuration number %1")
                .arg(position));
        return false;
    }
    return true;
}

// The copy has become the active configuration, whose description this is.
bool dateDescription(const Controller &controller)
{
    ReplyBuffer reply;
    if (!controller.reportUnless(
            controller.description(&reply),
            "Error save configuration: Cannot get configuration description")) {
        return false;
    }
    const QString description = DateStamp::removedFrom(reply.text());
    return controller.reportUnless(
        controller.setDatedDescription(description, DateStamp::today()),
        "Error save configuration: Cannot set configuration description");
}

bool prepareDownload(const Controller &controller, const QString &copy)
{
    controller.setTimeout(slowCommandTimeoutMs, 1);
    return controller.reportUnless(controller.prepareDownload(copy),
                                   "Error save configuration: Cannot prepare configuration for "
                                   "download. Export aborted.");
}

// Whether the copies can be downloaded now. @p copies receives them in order of creation.
bool prepareCopies(const Controller &controller, const QStringList &identifiers,
                   QStringList *copies)
{
    for (int i = 0; i < identifiers.size(); ++i) {
        QThread::yieldCurrentThread();
        const QString copy = Identifiers::newIdentifier();
        // Before it exists: a clone that is made although its answer is lost gets deleted as well.
        *copies << copy;
        if (!clone(controller, identifiers.at(i), i, copy) || !dateDescription(controller)) {
            continue;
        }
        if (!prepareDownload(controller, copy)) {
            return false;
        }
    }
    return true;
}

Outcome download(const Controller &controller, const QString &fileName)
{
    ReplyBuffer isAvailable;
    if (!controller.isDownloadAvailable(&isAvailable)
        || isAvailable.text() != QLatin1String("yes")) {
        return {false, ConfigSaveDlg::tr("Configuration data can not be recognized.")};
    }
    if (downloadConfigurationFile(controller, fileName) != 0) {
        return {
            false,
            ConfigSaveDlg::tr("Configuration data written to the file %1 failed!\n").arg(fileName)};
    }
    return {
        true,
        ConfigSaveDlg::tr("Configuration data successfully written to the file\n%1").arg(fileName)};
}

void deleteCopies(const Controller &controller, const QStringList &copies)
{
    for (const QString &copy : copies) {
        if (controller.deleteConfiguration(copy) == Controller::Answer::None) {
            controller.report(
                QStringLiteral("Error save configuration: Cannot delete configuration %1.")
                    .arg(copy));
        }
    }
}

void activate(const Controller &controller, const QString &identifier)
{
    controller.setTimeout(slowCommandTimeoutMs, 0);
    if (!controller.activate(identifier)) {
        controller.report(
            QStringLiteral("Error save configuration: Cannot set active configuration '%1'")
                .arg(identifier));
    }
}

} // namespace

void saveConfigurations(const Controller &controller, const QStringList &identifiers,
                        const QString &fileName, QWidget *dialog)
{
    WaitCursor cursor;
    keepPreviousFile(nameOnDisk(fileName));
    const QString activeBefore = activeConfiguration(controller);
    if (!discardEarlierDownload(controller)) {
        // No box tells the user that nothing was saved: the cursor stays as the sign of it.
        cursor.abandon();
        return;
    }
    Outcome outcome{
        false, ConfigSaveDlg::tr("Cannot prepare configuration for download.\nExport aborted.")};
    QStringList copies;
    if (prepareCopies(controller, identifiers, &copies)) {
        outcome = download(controller, fileName);
        deleteCopies(controller, copies);
        activate(controller, activeBefore);
    } // else the copies stay, so that what went wrong can still be looked at on the controller
    cursor.restore();
    MessageBox::show(outcome.isSuccess ? QMessageBox::Information : QMessageBox::Critical, dialog,
                     dialog, ConfigSaveDlg::tr("Save Configurations"), outcome.text);
}
