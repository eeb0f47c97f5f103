#pragma once

#include "channel/configentry.h"
#include "channel/guardedchannel.h"

#include <QDialog>
#include <QIcon>

#include <memory>

class ConfigLoadDlg;
class ConfigSaveDlg;
struct BackendVersions;
namespace Ui {
class ConfigurationDialog;
}

/// Lists the controller's configurations and offers everything that can be done with them.
///
/// Built once, shown again and again. It holds no state of the controller between refreshes:
/// whatever a button did, the list is read anew afterwards. Commands that fail are reported to the
/// host and, with few exceptions, passed over.
///
/// The host may destroy the dialog while a box or another dialog is open on top of it, or within a
/// command; handlers notice that and end without touching it.
class ChangeConfigurationDlg : public QDialog
{
    Q_OBJECT

public:
    /// Creates the save and load dialogs along with itself, but leaves the table empty:
    /// refreshList() follows.
    /// @p channel and @p versions are not owned and must outlive the dialog.
    ChangeConfigurationDlg(IOManager *channel, BackendVersions *versions, QWidget *parent);
    ~ChangeConfigurationDlg() override;

    /// Reads everything from the controller and fills the table, sorted by description.
    /// @return 0, or -1 when the controller does not answer; the user has been told, and the table
    /// keeps what it showed before
    /// @throws OwnerDestroyed when the host destroys the dialog within a command
    int refreshList();

public slots:
    /// Reads the list anew and shows the dialog modally.
    /// @return QDialog's result code, or -1 when the controller does not answer
    int update_and_exec();

private slots: // connected by name in setupUi(), never by hand
    void on_pushButton_new_clicked();
    void on_pushButton_apply_clicked();
    void on_pushButton_delete_clicked();
    void on_pushButton_edit_clicked();
    void on_pushButton_lock_clicked();
    void on_pushButton_load_clicked();
    void on_pushButton_save_clicked();
    void on_tableWidget_itemSelectionChanged();
    void on_tableWidget_cellDoubleClicked(int row, int column);
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct RowReplies;

    void setUpTable();
    void showFreeSpace();
    bool readCount(int *count);
    void readActiveId();
    ConfigEntry readSlot(int slot, RowReplies *replies);
    void showRow(int row, const ConfigEntry &entry);
    void clearSelection();
    void disableRowButtons();

    /// Runs refreshList(); false once the host has destroyed this dialog meanwhile.
    bool refreshAndSurvive();
    void selectActiveRow();
    void showActiveDescription();
    void focusTable();
    bool activate(int row);
    void deleteConfiguration(const QString &identifier);
    void activateLockedOrEdit(int row);
    bool runEditDialog(const QString &identifier);

    int currentRow() const;
    QString textAt(int row, int column) const;
    bool succeeded(int result, const char *errorText);

    const std::unique_ptr<Ui::ConfigurationDialog> m_ui;
    GuardedChannel m_channel;
    BackendVersions *m_versions;
    bool m_hasLocks = false;
    bool m_hasTransfers = false;
    bool m_isDoubleClicked = false; ///< the signal is being handled
    QIcon m_lockIcon;
    QIcon m_unlockIcon;
    QString m_activeId; ///< as read by the last refresh
    ConfigEntryList m_configurations;
    ConfigSaveDlg *m_saveDialog;
    ConfigLoadDlg *m_loadDialog;
};
