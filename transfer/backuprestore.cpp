#include "transfer/backuprestore.h"

#include "hostapi/backendversions.h"
#include "widgets/messagebox.h"

#include <QWidget>

#include <algorithm>
#include <utility>

BackupRestore::BackupRestore(const Controller &controller, BackendVersions *versions,
                             QWidget *dialog, QString path)
    : m_versions(versions)
    , m_dialog(dialog)
    , m_path(std::move(path))
    , m_backup(controller, versions)
{
}

int BackupRestore::run(const ConfigEntryList &configurations)
{
    if (isAnyLocked(configurations) || !read()) {
        return notStarted;
    }
    if (!isConfirmed()) {
        return declined;
    }
    if (!fits()) {
        return unfit;
    }
    if (m_isEmbedded && !askForNetwork()) {
        return declined;
    }
    if (!restore()) {
        return failed;
    }
    showSuccess();
    return restored;
}

bool BackupRestore::isAnyLocked(const ConfigEntryList &configurations)
{
    const bool isLocked = std::any_of(configurations.cbegin(), configurations.cend(),
                                      [](const ConfigEntry &entry) { return entry.locked; });
    if (isLocked) {
        MessageBox::information(m_dialog, m_dialog, tr("Cannot load backup"),
                                tr("Cannot load backup from file '%1' !\n One or more "
                                   "Configurations are locked.")
                                    .arg(m_path));
    }
    return isLocked;
}

bool BackupRestore::read()
{
    m_cursor.emplace();
    const bool isRead = m_backup.readFromFile(m_path);
    m_cursor.reset();
    if (!isRead) {
        MessageBox::critical(m_dialog, m_dialog, tr("Error reading backup file"),
                             tr("Cannot read '%1' !").arg(m_path));
    }
    return isRead;
}

bool BackupRestore::isConfirmed()
{
    return MessageBox::warning(m_dialog, m_dialog->parentWidget(), tr("Confirmation"),
                               tr("Restoring this backup overwrites all settings and already "
                                  "existing configurations.\n\nAny previous settings will get "
                                  "lost!\n\nProceed?"),
                               QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
        == QMessageBox::Yes;
}

bool BackupRestore::fits()
{
    const bool isFit = m_backup.isCompatibleWithController(&m_isEmbedded);
    if (!isFit) {
        MessageBox::critical(m_dialog, m_dialog->parentWidget(), tr("Invalid backup file"),
                             tr("Unable to restore from backup (%1)").arg(m_path));
    }
    return isFit;
}

// False if there is nobody left to restore for; No is an answer like Yes.
bool BackupRestore::askForNetwork()
{
    const MessageBox::Button answer = MessageBox::question(
        m_dialog, m_dialog->parentWidget(), tr("Confirmation"),
        tr("Hostname and ip settings can be restored. After reboot the %1 might not be reachable "
           "via network due to wrong network settings.\n\nRestore?")
            .arg(m_versions->systemModel),
        QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    m_withNetwork = answer == QMessageBox::Yes;
    return answer != QMessageBox::NoButton;
}

bool BackupRestore::restore()
{
    if (m_isEmbedded) {
        // Without the question for the network the wait cursor stays off. It must stay so.
        m_cursor.emplace();
    }
    const bool isRestored = m_backup.restoreToController(m_withNetwork, &m_failedSlaves);
    if (!isRestored) {
        m_backup.cancelUpload();
    }
    m_cursor.reset();
    if (!isRestored) {
        MessageBox::critical(m_dialog, m_dialog->parentWidget(), tr("Invalid backup file"),
                             tr("Error while restoring from backup (%1).").arg(m_path));
    }
    return isRestored;
}

void BackupRestore::showSuccess()
{
    if (m_failedSlaves.isEmpty()) {
        MessageBox::information(m_dialog, m_dialog->parentWidget(), tr("Success"),
                                tr("Backup restored!"));
    } else {
        MessageBox::information(m_dialog, m_dialog->parentWidget(),
                                tr("Success (incomplete cascade)"),
                                tr("Backup restored!\n\nNot all machines of the configured\n"
                                   "cascade could be reconnected. Please, see\nthe Events window "
                                   "for more details."));
    }
}
