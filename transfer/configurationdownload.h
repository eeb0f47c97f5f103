#pragma once

#include <QByteArray>
#include <QString>

class Controller;

/// The bytes under which a configuration file is written: such files are named in Latin-1 on the
/// disk, whatever the system's own encoding.
inline QByteArray nameOnDisk(const QString &fileName)
{
    return fileName.toLatin1();
}

/// Fetches what the controller has prepared for download, chunk by chunk, straight into the file
/// @p fileName, which must not exist yet.
///
/// The file holds the decoded chunks in order and nothing else. Each chunk is on its way to the
/// disk before the next is asked for, so memory does not grow with the file. What was written
/// before a failure stays. Most failures are reported to the host as well, in the words that name
/// them.
/// @return 0 if the file is complete; -1 if it may hold a part; -2 if it exists already, in which
/// case nothing was touched
int downloadConfigurationFile(const Controller &controller, const QString &fileName);
