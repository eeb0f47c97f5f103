#pragma once

#include <QString>

class IOManager;
struct BackendVersions;

/// Backs up the whole controller into the user's home directory, at most once per controller and
/// day, and keeps the newest older backup of the same controller beside it.
///
/// It runs unasked, so it opens no window; a backup that fails is reported to the host. A
/// controller that is at work is not disturbed.
class AutomaticBackup
{
public:
    /// What became of the backup of the day.
    enum class Result {
        NotDue,      ///< the controller is busy or cannot be asked
        AlreadyMade, ///< the backup of the day is on disk since an earlier run
        Made,        ///< the backup of the day has been written
        Failed       ///< reported to the host; only the newest older backup is left
    };

    /// @p channel and @p versions are not owned. @p hostVersion becomes part of the directory as it
    /// stands and may be empty.
    AutomaticBackup(IOManager *channel, BackendVersions *versions, const QString &hostVersion);

    /// Makes the backup of the day where one is due.
    Result run();

private:
    bool isControllerIdle();
    bool askControllerName();
    QString fileNameOfToday() const;
    void prune() const;
    bool collectAndWrite(const QString &fileName);

    IOManager *m_channel;
    BackendVersions *m_versions;
    QString m_directory;
    QString m_controllerName; ///< its host name
};
