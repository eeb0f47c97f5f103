#pragma once

class Controller;
class QString;
struct BackendVersions;

/// Backs up the whole controller into the user's home directory, at most once per controller and
/// day, and keeps the newest older backup of the same controller beside it.
///
/// It runs unasked, so it opens no window; a backup that fails is reported to the host. A
/// controller that is at work is not disturbed.
/// @param versions     not owned
/// @param hostVersion  becomes part of the directory as it stands and may be empty; the host may
///                     tell it as late as within the first commands
/// @return whether the backup of the day is on disk since an earlier run
bool makeBackupOfTheDay(const Controller &controller, BackendVersions *versions,
                        const QString &hostVersion);
