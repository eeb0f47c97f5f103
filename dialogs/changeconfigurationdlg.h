#pragma once

#include "ui_changeconfigurationdlg.h"

#include "channel/controller.h"
#include "dialogs/configurationlist.h"
#include "widgets/repaint.h"

#include <QDialog>
#include <QIcon>

class ConfigLoadDlg;
class ConfigSaveDlg;
struct BackendVersions;
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
    /// Creates the save and load dialogs along with itself and reads everything for the first time.
    /// @p channel and @p versions are not owned and must outlive the dialog; @p channel may be
    /// null.
    /// @throws OwnerDestroyed when the host destroys @p parent meanwhile
    ChangeConfigurationDlg(IOManager *channel, BackendVersions *versions, QWidget *parent);
    ~ChangeConfigurationDlg() override;

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
    void setUpTable();
    void refreshBeforeAdoption(QWidget *parent);
    /// Reads everything from the controller and fills the table, sorted by description.
    /// @return 0, or -1 when the controller does not answer; the user has been told, and the table
    /// keeps what it showed before
    int refreshList();
    void showFreeSpace(double free);
    void showRows();
    void showRow(int row, const ConfigEntry &entry);
    void clearSelection();

    /// Runs refreshList(); false once the host has destroyed this dialog meanwhile.
    bool refreshAndSurvive()
    {
        return m_controller.ownerSurvives([this] {
            repaintWindows(); // one has just closed
            refreshList();
        });
    }
    void selectActiveRow();
    void showActiveDescription();
    bool activate(const QString &identifier);
    void deleteConfiguration(const QString &identifier);
    void activateLockedOrEdit(int row);
    bool runEditDialog(const QString &identifier);

    QString textAt(int row, int column) const;

    Ui::ConfigurationDialog m_ui;
    IOManager *m_channel; ///< for the dialogs that are opened
    Controller m_controller;
    ConfigurationList m_list;
    bool m_isDoubleClicked = false; ///< the signal is being handled
    QIcon m_lockIcon;
    QIcon m_unlockIcon;
    ConfigSaveDlg *m_saveDialog;
    ConfigLoadDlg *m_loadDialog;
};
