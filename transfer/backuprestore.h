#pragma once

#include "channel/configentry.h"

class Controller;
class QWidget;
struct BackendVersions;

/// What became of a restore.
namespace RestoreCode {
inline constexpr int restored = 0;   ///< perhaps without some of the slaves
inline constexpr int notStarted = 1; ///< a configuration is locked, or the file cannot be read
inline constexpr int declined = 2;   ///< also when the host destroyed the dialog meanwhile
inline constexpr int unfit = 3;      ///< a backup of another model or of newer versions
inline constexpr int failed = 4;     ///< the restore broke off
} // namespace RestoreCode

/// Restores the controller from a backup document, with the user's consent, unless one of @p
/// configurations, those on the controller, is locked.
///
/// The user learns of everything from message boxes; the host is told which slaves of the cascade
/// could not be reconnected. The controller stays as it is until the user has agreed and the backup
/// has been found to fit. From there on nothing is rolled back: a restore that fails leaves the
/// controller as far as it got, and the same backup may be restored again.
///
/// May throw FullBackup's connection error; the cursor is as it was before in any case.
/// @param versions  not owned
/// @param dialog    the parent of the first boxes, as its parent widget is of the others; both may
///                  be destroyed while a box is open
/// @param path      a file that was found to be a backup document
/// @return one of the codes above
int restoreBackup(const Controller &controller, BackendVersions *versions, QWidget *dialog,
                  const QString &path, const ConfigEntryList &configurations);
