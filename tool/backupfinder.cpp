#include "tool/backupfinder.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

namespace {

bool isClosedFolder(const QFileInfo &entry)
{
    return entry.isDir() && !entry.isSymLink() && !(entry.isReadable() && entry.isExecutable());
}

QStringList filesBelow(const QString &folder)
{
    // What is neither file nor folder, a link to nowhere for example, counts as "System".
    constexpr auto everything =
        QDir::AllDirs | QDir::Files | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot;
    QStringList files;
    QDirIterator entries(folder, {QStringLiteral("*.xml")}, everything,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        if (!entries.fileInfo().isDir() || isClosedFolder(entries.fileInfo())) {
            files.append(path);
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

QStringList BackupFinder::filesIn(const QStringList &paths)
{
    QStringList files;
    for (const QString &path : paths) {
        const QStringList inFolder =
            QFileInfo(path).isDir() ? filesBelow(QDir::cleanPath(path)) : QStringList();
        files += inFolder.isEmpty() ? QStringList{path} : inFolder;
    }
    files.removeDuplicates();
    return files;
}

QStringList BackupFinder::automaticBackups()
{
    const QDir root(QDir::homePath() + QStringLiteral("/.ZOR/VELTRA4"));
    // A front end that does not tell its version leaves one level out.
    QStringList folders{root.filePath(QStringLiteral("backup"))};
    const QStringList versions = root.entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString &version : versions) {
        folders.append(root.filePath(version + QStringLiteral("/backup")));
    }
    QStringList files;
    for (const QString &folder : qAsConst(folders)) {
        files += filesBelow(folder);
    }
    return files.isEmpty() ? QStringList{root.path()} : files;
}

QStringList BackupFinder::filesInOrAutomatic(const QStringList &paths)
{
    return paths.isEmpty() ? automaticBackups() : filesIn(paths);
}
