#pragma once

#include "ui_newconfigurationdlg.h"

#include "channel/controller.h"

#include <QDialog>

/// Creates a configuration on the controller, as a clone of the active one or with default values.
///
/// The controller makes the new configuration the active one; it has no password. The dialog does
/// not ask whether its commands succeed: it always sends them all, closes and announces the change,
/// and the list that opened it shows what has become of them.
class NewConfigurationDlg : public QDialog, private Ui::NewConfigurationDialog
{
    Q_OBJECT

public:
    /// @p channel is not owned and must outlive the dialog.
    NewConfigurationDlg(IOManager *channel, QWidget *parent);

public slots:
    /// @return QDialog::Accepted once the configuration was to be created, QDialog::Rejected when
    /// the user gave up
    int update_and_exec() { return exec(); }

private slots: // connected by name in setupUi(), never by hand
    void on_pushButton_create_clicked();

private:
    void createAndAnnounce();
    void createConfiguration();
    void describeConfiguration();

    Controller m_controller;
};
