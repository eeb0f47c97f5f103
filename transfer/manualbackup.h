#pragma once

#include <QCoreApplication>
#include <QString>

class IOManager;
class QWidget;
struct BackendVersions;

/// Backs up the whole controller into a file that the user chooses.
///
/// Once a file is chosen, whatever happens ends in exactly one message box; the host is told
/// nothing.
class ManualBackup
{
    // The texts belong to the dialog's.
    Q_DECLARE_TR_FUNCTIONS(ConfigSaveDlg)

public:
    /// @p channel and @p versions are not owned. @p dialog is the parent of the file chooser and of
    /// the boxes, and may be destroyed while one of them is open.
    ManualBackup(IOManager *channel, BackendVersions *versions, QWidget *dialog);

    /// Asks for the file, collects and writes. Does nothing when the user cancels.
    void run();

private:
    struct Outcome
    {
        bool isSuccess;
        QString title;
        QString text;
    };

    QString proposedFileName();
    QString controllerName();
    QString askForFileName(const QString &proposal);
    Outcome backUpInto(const QString &fileName);
    void show(const Outcome &outcome);

    IOManager *m_channel;
    BackendVersions *m_versions;
    QWidget *m_dialog;
};
