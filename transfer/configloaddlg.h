#pragma once

#include "ui_configloaddlg.h"

#include "channel/configentry.h"
#include "channel/controller.h"
#include "channel/importitem.h"

#include <QDialog>
#include <QString>
#include <QStringList>

struct BackendVersions;

/// Brings configurations from a file back onto the controller.
///
/// The file is chosen first. A backup document restores the whole controller, see restoreBackup(),
/// and the dialog is never shown. Any other file is uploaded as it is; the dialog then offers what
/// the controller found in it, and imports what the user selects, see importConfigurations().
/// Configurations that are locked on the controller cannot be selected.
class ConfigLoadDlg : public QDialog
{
    Q_OBJECT

public:
    /// @p channel and @p versions are not owned and must outlive the dialog. @p parent is the
    /// parent of the file chooser and of most boxes as well.
    ConfigLoadDlg(IOManager *channel, BackendVersions *versions, QWidget *parent);

    /// Replaces the controller's configurations that a load is compared with; called before each
    /// use.
    void setConfigurationList(const ConfigEntryList &entries) { m_configurations = entries; }

    /// Asks for a file and loads it; returns when the user has closed everything that it opened.
    /// The dialog may be gone by then, destroyed by the host; OwnerDestroyed is thrown if that was
    /// within a command.
    ///
    /// @return for a backup the code of restoreBackup(), or 10 if an exception ended the
    /// restore; for any other file QDialog::Accepted once the dialog was shown and closed; 1 if
    /// there was nothing to show it for; -1 if it cannot be told whether the file is a backup
    int openAndExec();

private slots: // connected by name in setupUi()
    void on_pushButton_selectAll_clicked();
    void on_pushButton_clearSelection_clicked();
    void on_pushButton_load_clicked();
    /// Whichever way the dialog is closed, it counts as accepted.
    void on_pushButton_exit_clicked() { accept(); }
    void on_tableWidget_itemSelectionChanged();
    void resizeEvent(QResizeEvent *event) override;

private:
    int restoreFromBackupFile(const QString &path);
    int refuseToValidate();
    int loadConfigurationFile(const QString &path);
    bool readImportItems();
    void fillTable();
    void fillRow(int row, const ImportItem &item, bool isLocked);
    QStringList selectedIdentifiers() const;

    Ui::ConfigLoadDlgClass m_ui;
    Controller m_controller;
    BackendVersions *m_versions;
    QString m_lastDirectory; ///< where the last file was chosen
    ConfigEntryList m_configurations;
    QVector<ImportItem> m_importItems;
};
