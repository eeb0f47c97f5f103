#pragma once

#include "ui_configsavedlg.h"

#include "channel/configentry.h"
#include "channel/controller.h"

#include <QDialog>
#include <QString>
#include <QStringList>

class ConfigurationsMessagereceiver;
struct BackendVersions;

/// Saves configurations of the controller into a file, or backs up the whole controller.
///
/// It also speaks for the plug-in in the background for as long as it lives: it receives the host's
/// messages, and makes the backup of the day two seconds after it was created.
class ConfigSaveDlg : public QDialog
{
    Q_OBJECT

public:
    /// @p channel and @p versions are not owned and must outlive the dialog.
    ConfigSaveDlg(IOManager *channel, BackendVersions *versions, QWidget *parent);
    ~ConfigSaveDlg() override;

    /// Replaces the configurations that are offered; called before each showing.
    void setConfigurationList(const ConfigEntryList &entries) { m_configurations = entries; }

public slots:
    /// Shows the dialog and returns when the user has closed it; the dialog may be gone by then,
    /// destroyed by the host.
    void runSaveDialog();

    /// Takes note of the host's version, "v4.12.3" for example, which decides whether there are
    /// automatic backups and where they go.
    void onSendModulParentVersion(const QString &version);

    /// Makes the backup of the day, see makeBackupOfTheDay(). Opens no window.
    void doAutomaticBackup();

private slots: // connected by name in setupUi(), never by hand
    void on_pushButton_selectAll_clicked();
    void on_pushButton_clearSelection_clicked();
    void on_pushButton_save_clicked();
    /// Whichever way the dialog is closed, it counts as accepted.
    void on_pushButton_exit_clicked() { accept(); }
    void on_tableWidget_selectConfigs_itemSelectionChanged();
    void on_checkBox_allSettings_stateChanged(int state);

private:
    void resizeEvent(QResizeEvent *event) override;
    void fillTable();
    void showAvailability(bool isAvailable);
    QStringList selectedIdentifiers() const;
    void chooseFileAndSave(const QStringList &identifiers);

    Ui::ConfigSaveDlgClass m_ui;
    Controller m_controller;
    BackendVersions *m_versions;
    QString m_lastDirectory; ///< where the last configuration file was chosen
    ConfigEntryList m_configurations;
    bool m_todaysBackupExists = false;
    bool m_isBackupAllowed = true;
    ConfigurationsMessagereceiver *m_messageReceiver;
    QString m_hostVersion; ///< empty until the host has told it
};
