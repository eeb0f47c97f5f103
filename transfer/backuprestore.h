#pragma once

#include "backup/fullbackup.h"
#include "channel/configentry.h"
#include "widgets/waitcursor.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <optional>

class Controller;
class QWidget;
struct BackendVersions;

/// Restores the controller from a backup document, with the user's consent; one object per restore.
///
/// The user learns of everything from message boxes; the host is told which slaves of the cascade
/// could not be reconnected. The controller stays as it is until the user has agreed and the backup
/// has been found to fit. From there on nothing is rolled back: a restore that fails leaves the
/// controller as far as it got, and the same backup may be restored again.
class BackupRestore
{
    // The texts belong to the dialog's.
    Q_DECLARE_TR_FUNCTIONS(ConfigLoadDlg)

public:
    static constexpr int restored = 0;   ///< perhaps without some of the slaves
    static constexpr int notStarted = 1; ///< a configuration is locked, or the file cannot be read
    static constexpr int declined = 2;   ///< also when the host destroyed the dialog meanwhile
    static constexpr int unfit = 3;      ///< a backup of another model or of newer versions
    static constexpr int failed = 4;     ///< the restore broke off

    /// @param versions  not owned
    /// @param dialog    the parent of the first boxes, as its parent widget is of the others; both
    ///                  may be destroyed while a box is open
    /// @param path      a file that was found to be a backup document
    BackupRestore(const Controller &controller, BackendVersions *versions, QWidget *dialog,
                  QString path);

    /// Restores, unless one of @p configurations, those on the controller, is locked. May throw
    /// FullBackup's connection error; the cursor is as it was before in any case.
    /// @return one of the codes above
    int run(const ConfigEntryList &configurations);

private:
    bool isAnyLocked(const ConfigEntryList &configurations);
    bool read();
    bool isConfirmed();
    bool fits();
    bool askForNetwork();
    bool restore();
    void showSuccess();

    BackendVersions *m_versions;
    QWidget *m_dialog;
    QString m_path;
    FullBackup m_backup;
    bool m_isEmbedded = false;  ///< the controller's network settings can be restored
    bool m_withNetwork = false; ///< and the user wants them to be
    std::optional<WaitCursor> m_cursor;
    QStringList m_failedSlaves;
};
