#include "transfer/manualbackup.h"

#include "backup/fullbackup.h"
#include "channel/quotes.h"
#include "channel/replybuffer.h"
#include "transfer/collecting.h"
#include "transfer/configsavedlg.h"
#include "widgets/filedialog.h"
#include "widgets/messagebox.h"
#include "widgets/waitcursor.h"

#include <QDateTime>
#include <QDir>
#include <QLocale>

namespace {

constexpr int serialDigits = 8;

struct Outcome
{
    bool isSuccess;
    const char *title; // these texts are not translated
    QString text;
};

// Its model and serial number.
QString nameOf(const Controller &controller)
{
    ReplyBuffer serialReply;
    controller.serial(&serialReply);
    const QString serial = serialReply.utf8Text();

    ReplyBuffer model;
    if (controller.model(&model) && model.utf8Text() == QLatin1String("2")) {
        return QLatin1String("XQU_M_S") + serial.rightJustified(serialDigits, QLatin1Char('0'));
    }

    ReplyBuffer description;
    if (!controller.modelDescription(&description)) {
        return QLatin1String("XQU_") + serial;
    }
    return withoutDoubleQuotes(description.utf8Text()).replace(QLatin1Char(' '), QLatin1Char('_'))
        + QLatin1Char('_') + serial;
}

// In the user's home directory: the controller, then the time.
QString proposedFileName(const Controller &controller)
{
    const QString name = nameOf(controller); // which may take its time
    const QString now =
        QLocale::c().toString(QDateTime::currentDateTime(), QStringLiteral("yyyy-MM-dd_HHmmss"));
    return QDir::homePath() + QDir::separator() + name + QLatin1String("_backup_") + now
        + QLatin1String(".xml");
}

Outcome backUpInto(const QString &fileName, const Controller &controller, BackendVersions *versions)
{
    const WaitCursor cursor;
    FullBackup backup(controller, versions);
    if (!isCollected(&backup)) {
        backup.cancelDownload();
        return {false, "Invalid backup",
                QStringLiteral("Error while receiving backup information!")};
    }
    if (!backup.writeToFile(fileName)) {
        return {false, "Invalid backup file",
                QStringLiteral("Error while saving backup to\nfile '%1'!").arg(fileName)};
    }
    return {true, "Success", QStringLiteral("Backup created!")};
}

} // namespace

void backUpByHand(const Controller &controller, BackendVersions *versions, QWidget *dialog)
{
    const QString fileName = FileDialog::saveFileName(
        dialog, dialog, ConfigSaveDlg::tr("Backup all settings"), proposedFileName(controller),
        ConfigSaveDlg::tr("XML files (*.xml *.*)"));
    if (!fileName.isEmpty()) {
        const auto [isSuccess, title, text] = backUpInto(fileName, controller, versions);
        MessageBox::outcome(dialog, dialog, isSuccess, QLatin1String(title), text);
    }
}
