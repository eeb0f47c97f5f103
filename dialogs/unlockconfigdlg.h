#pragma once

#include "ui_unlockconfigdlg.h"

#include "channel/controller.h"

#include <QDialog>

/// Removes the password of the controller's active configuration, given that password or the
/// controller's super password.
///
/// The password is removed only once the controller has found the configuration changeable; after a
/// wrong one the user may try again as often as wanted.
class UnlockConfigDlg : public QDialog, private Ui::UnlockConfigurationDialog
{
    Q_OBJECT

public:
    /// @p channel is not owned and must outlive the dialog.
    UnlockConfigDlg(IOManager *channel, QWidget *parent);

public slots:
    /// Shows the description of @p config_id, which is the active configuration.
    /// @return QDialog's result code
    int update_and_exec(QString config_id);

private slots: // connected by name in setupUi(), never by hand
    void on_pushButton_ok_clicked();

private:
    void unlock(bool isSuper);
    void removePassword(bool isSuper);
    void refusePassword(bool isSuper);

    Controller m_controller;
    QString m_configId; ///< what is shown; the password itself goes to the active configuration
};
