#include "transfer/manualbackup.h"

#include "backup/fullbackup.h"
#include "channel/filedialog.h"
#include "channel/messagebox.h"
#include "channel/quotes.h"
#include "channel/replybuffer.h"
#include "channel/waitcursor.h"
#include "hostapi/iomanager.h"
#include "transfer/collecting.h"

#include <QDateTime>
#include <QDir>
#include <QLocale>

namespace {
constexpr int serialDigits = 8;
} // namespace

ManualBackup::ManualBackup(IOManager *channel, BackendVersions *versions, QWidget *dialog)
    : m_channel(channel)
    , m_versions(versions)
    , m_dialog(dialog)
{
}

void ManualBackup::run()
{
    const QString fileName = askForFileName(proposedFileName());
    if (!fileName.isEmpty()) {
        show(backUpInto(fileName));
    }
}

// In the user's home directory: the controller, then the time.
QString ManualBackup::proposedFileName()
{
    const QString now =
        QLocale::c().toString(QDateTime::currentDateTime(), QStringLiteral("yyyy-MM-dd_HHmmss"));
    return QDir::homePath() + QDir::separator() + controllerName() + QLatin1String("_backup_") + now
        + QLatin1String(".xml");
}

QString ManualBackup::controllerName()
{
    ReplyBuffer serialReply;
    m_channel->queryString(serialReply.data(), "system controller_serial");
    const QString serial = serialReply.utf8Text();

    ReplyBuffer model;
    const bool hasModel = m_channel->queryString(model.data(), "system model") == 0;
    if (hasModel && model.utf8Text() == QLatin1String("2")) {
        return QLatin1String("XQU_M_S") + serial.rightJustified(serialDigits, QLatin1Char('0'));
    }

    ReplyBuffer description;
    if (m_channel->queryString(description.data(), "system model_description") != 0) {
        return QLatin1String("XQU_") + serial;
    }
    return withoutDoubleQuotes(description.utf8Text()).replace(QLatin1Char(' '), QLatin1Char('_'))
        + QLatin1Char('_') + serial;
}

QString ManualBackup::askForFileName(const QString &proposal)
{
    return FileDialog::saveFileName(m_dialog, m_dialog, tr("Backup all settings"), proposal,
                                    tr("XML files (*.xml *.*)"));
}

ManualBackup::Outcome ManualBackup::backUpInto(const QString &fileName)
{
    const WaitCursor cursor;
    FullBackup backup(m_channel, m_versions);
    if (!isCollected(&backup)) {
        backup.cancelDownload();
        return {false, QStringLiteral("Invalid backup"),
                QStringLiteral("Error while receiving backup information!")};
    }
    if (!backup.writeToFile(fileName)) {
        return {false, QStringLiteral("Invalid backup file"),
                QStringLiteral("Error while saving backup to\nfile '%1'!").arg(fileName)};
    }
    return {true, QStringLiteral("Success"), QStringLiteral("Backup created!")};
}

void ManualBackup::show(const Outcome &outcome)
{
    if (outcome.isSuccess) {
        MessageBox::information(m_dialog, m_dialog, outcome.title, outcome.text);
    } else {
        MessageBox::critical(m_dialog, m_dialog, outcome.title, outcome.text);
    }
}
