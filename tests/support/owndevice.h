#pragma once

#include <QFile>
#include <QString>

#include <sys/stat.h>
#include <unistd.h>

/// A device of the test's own in a folder, like the machine's of that path, so that a fault can do
/// the machine no harm. Only root could; for others it is the machine's.
/// @return its path, empty where devices cannot be made
inline QString ownDevice(const char *device, const QString &folder)
{
    if (geteuid() != 0) {
        return QString::fromLatin1(device);
    }
    const QString path = folder + QLatin1String("/device");
    struct stat original = {};
    const bool isMade = stat(device, &original) == 0
        && mknod(QFile::encodeName(path).constData(), original.st_mode, original.st_rdev) == 0;
    // In a file system for no devices there can be one, but nobody can open it.
    return isMade && QFile(path).open(QIODevice::WriteOnly) ? path : QString();
}
