#pragma once

#include "channel/controller.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

class QWidget;

/// Saves configurations of the controller into one file.
///
/// The controller makes the file's contents: each configuration is cloned, its copy gets today's
/// date into the description and is prepared for download; what was prepared is fetched into the
/// file, the copies are deleted, and the configuration that was active before is made active again.
/// The user learns the outcome from a box, the host learns each single failure as a message.
///
/// A configuration that cannot be cloned or dated is missing from the file, even though the outcome
/// may be called a success. When one cannot be prepared, the save ends at once and leaves the
/// copies made so far on the controller, the last of them active.
class ConfigurationSave
{
    // The texts belong to the dialog's.
    Q_DECLARE_TR_FUNCTIONS(ConfigSaveDlg)

public:
    /// @p dialog is the parent of the boxes and may be destroyed while one of them is open, which
    /// is always the last step.
    ConfigurationSave(const Controller &controller, QWidget *dialog);

    /// Saves the configurations named by @p identifiers, in that order, into @p fileName. A file
    /// that is there already is kept under its name with ".bak" appended.
    void run(const QStringList &identifiers, const QString &fileName);

private:
    struct Outcome
    {
        bool isSuccess;
        QString text;
    };

    QString activeConfiguration();
    bool discardEarlierDownload();
    bool prepareCopies(const QStringList &identifiers);
    bool clone(const QString &identifier, int position, const QString &copy);
    bool dateDescription();
    bool prepareDownload(const QString &copy);
    Outcome download(const QString &fileName);
    void deleteCopies();
    void activate(const QString &identifier);
    void show(const Outcome &outcome);

    Controller m_controller;
    QWidget *m_dialog;
    QStringList m_copies; ///< temporary configurations on the controller, in order of creation
};
