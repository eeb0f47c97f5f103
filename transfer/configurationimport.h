#pragma once

#include "transfer/lockstates.h"

#include <QCoreApplication>
#include <QStringList>

class IOManager;
class QWidget;

/// Imports configurations that were uploaded before, in place of those of the same identifier.
///
/// A configuration that is on the controller already is deleted first; a locked one is left alone,
/// and the one that was uploaded is not imported. The first import that fails ends the rest.
/// Nothing is rolled back: what had to give way to an import that failed or was never reached is
/// gone from the controller, but the file still holds what should have replaced it.
class ConfigurationImport
{
    // The texts belong to the dialog's.
    Q_DECLARE_TR_FUNCTIONS(ConfigLoadDlg)

public:
    /// @param channel   not owned
    /// @param existing  what is on the controller
    /// @param dialog    the parent of the boxes; it may be destroyed while one is open, which is
    ///                  always the last step
    ConfigurationImport(IOManager *channel, LockStates existing, QWidget *dialog);

    /// Imports in the given order under the wait cursor, tells the rest of the host, and shows the
    /// user how it went.
    void run(const QStringList &identifiers);

private:
    QStringList withRoomMadeFor(const QStringList &identifiers);
    void deleteConfiguration(const QString &identifier);
    bool import(const QStringList &identifiers);
    void show(const QString &outcome);

    IOManager *m_channel;
    LockStates m_existing;
    QWidget *m_dialog;
};
