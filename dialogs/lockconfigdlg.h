#pragma once

#include "ui_lockconfigdlg.h"

#include "channel/controller.h"

#include <QDialog>

/// Protects the controller's active configuration with a password, typed twice.
///
/// The controller's verdict is not asked for: the list that opened the dialog reads the state again
/// afterwards.
class LockConfigDlg : public QDialog, private Ui::LockConfigurationDialog
{
    Q_OBJECT

public:
    /// @p channel is not owned and must outlive the dialog.
    LockConfigDlg(IOManager *channel, QWidget *parent);

public slots:
    /// Shows the description of @p config_id, which is the active configuration.
    /// @return QDialog's result code
    int update_and_exec(QString config_id);

private slots: // connected by name in setupUi(), never by hand
    void on_pushButton_ok_clicked();

private:
    void lock(const QString &password);

    Controller m_controller;
    QString m_configId; ///< what is shown; the password itself goes to the active configuration
};
