#pragma once

#include "ui_editconfigdlg.h"

#include "channel/controller.h"

#include <QDialog>

/// Changes the owner and the description of one of the controller's configurations.
///
/// The controller takes both for its active configuration only: OK makes the edited configuration
/// the active one, even if nothing was changed. Whether the commands succeed is not asked for; the
/// list that opened the dialog shows what has become of them.
class EditConfigDlg : public QDialog, private Ui::EditConfigDialog
{
    Q_OBJECT

public:
    /// @p channel is not owned and must outlive the dialog.
    EditConfigDlg(IOManager *channel, QWidget *parent);

public slots:
    /// Shows what the controller stores for @p config_id; a field it does not answer stays empty.
    /// @return QDialog's result code
    int update_and_exec(QString config_id);

private slots: // connected by name in setupUi(), never by hand
    void on_pushButton_ok_clicked();

private:
    void store(const QString &owner, const QString &description);

    Controller m_controller;
    QString m_configId;
};
