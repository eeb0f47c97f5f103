#include "transfer/backuprestore.h"

#include "backup/fullbackup.h"
#include "hostapi/backendversions.h"
#include "transfer/configloaddlg.h"
#include "widgets/messagebox.h"
#include "widgets/waitcursor.h"

#include <algorithm>
#include <optional>

namespace {

bool isAnyLocked(const ConfigEntryList &configurations)
{
    return std::any_of(configurations.cbegin(), configurations.cend(),
                       [](const ConfigEntry &entry) { return entry.locked; });
}

bool isRead(FullBackup *backup, const QString &path)
{
    const WaitCursor cursor;
    return backup->readFromFile(path);
}

bool isConfirmed(QWidget *dialog)
{
    const QString text = ConfigLoadDlg::tr(
        "Restoring this backup overwrites all settings and already existing configurations.\n\n"
        "Any previous settings will get lost!\n\nProceed?");
    return MessageBox::show(QMessageBox::Warning, dialog, dialog->parentWidget(),
                            ConfigLoadDlg::tr("Confirmation"), text,
                            QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
        == QMessageBox::Yes;
}

// QMessageBox::NoButton if there is nobody left to restore for; No is an answer like Yes.
MessageBox::Button askForNetwork(QWidget *dialog, const QString &model)
{
    const QString text = ConfigLoadDlg::tr(
        "Hostname and ip settings can be restored. After reboot the %1 might not be reachable via "
        "network due to wrong network settings.\n\nRestore?");
    return MessageBox::show(QMessageBox::Question, dialog, dialog->parentWidget(),
                            ConfigLoadDlg::tr("Confirmation"), text.arg(model),
                            QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
}

void showSuccess(QWidget *dialog, bool isComplete)
{
    MessageBox::show(QMessageBox::Information, dialog, dialog->parentWidget(),
                     isComplete ? ConfigLoadDlg::tr("Success")
                                : ConfigLoadDlg::tr("Success (incomplete cascade)"),
                     isComplete ? ConfigLoadDlg::tr("Backup restored!")
                                : ConfigLoadDlg::tr("Backup restored!\n\nNot all machines of the "
                                                    "configured\ncascade could be reconnected. "
                                                    "Please, see\nthe Events window for more "
                                                    "details."));
}

int restoreConfirmed(FullBackup *backup, const QString &model, QWidget *dialog, const QString &path)
{
    bool isEmbedded = false;
    if (!backup->isCompatibleWithController(&isEmbedded)) {
        MessageBox::show(QMessageBox::Critical, dialog, dialog->parentWidget(),
                         ConfigLoadDlg::tr("Invalid backup file"),
                         ConfigLoadDlg::tr("Unable to restore from backup (%1)").arg(path));
        return RestoreCode::unfit;
    }
    // Without the question for the network the wait cursor stays off. It must stay so.
    std::optional<WaitCursor> cursor;
    bool withNetwork = false;
    if (isEmbedded) {
        const MessageBox::Button answer = askForNetwork(dialog, model);
        if (answer == QMessageBox::NoButton) {
            return RestoreCode::declined;
        }
        withNetwork = answer == QMessageBox::Yes;
        cursor.emplace();
    }
    QStringList failedSlaves;
    const bool isRestored = backup->restoreToController(withNetwork, &failedSlaves);
    if (!isRestored) {
        backup->cancelUpload();
    }
    cursor.reset();
    if (!isRestored) {
        MessageBox::show(QMessageBox::Critical, dialog, dialog->parentWidget(),
                         ConfigLoadDlg::tr("Invalid backup file"),
                         ConfigLoadDlg::tr("Error while restoring from backup (%1).").arg(path));
        return RestoreCode::failed;
    }
    showSuccess(dialog, failedSlaves.isEmpty());
    return RestoreCode::restored;
}

} // namespace

int restoreBackup(const Controller &controller, BackendVersions *versions, QWidget *dialog,
                  const QString &path, const ConfigEntryList &configurations)
{
    if (isAnyLocked(configurations)) {
        MessageBox::show(QMessageBox::Information, dialog, dialog,
                         ConfigLoadDlg::tr("Cannot load backup"),
                         ConfigLoadDlg::tr("Cannot load backup from file '%1' !\n One or more "
                                           "Configurations are locked.")
                             .arg(path));
        return RestoreCode::notStarted;
    }
    FullBackup backup(controller, versions);
    if (!isRead(&backup, path)) {
        MessageBox::show(QMessageBox::Critical, dialog, dialog,
                         ConfigLoadDlg::tr("Error reading backup file"),
                         ConfigLoadDlg::tr("Cannot read '%1' !").arg(path));
        return RestoreCode::notStarted;
    }
    return isConfirmed(dialog) ? restoreConfirmed(&backup, versions->systemModel, dialog, path)
                               : RestoreCode::declined;
}
