#pragma once

#include <QStringList>

/// Finds the files that a command is about.
namespace BackupFinder {

/// The files that @p paths stand for, each once. A folder stands for all *.xml in it and below, by
/// name; links to folders are not followed. A folder that cannot be read, or one of @p paths that
/// holds no such file, stands for itself and is complained of when it is judged.
QStringList filesIn(const QStringList &paths);

/// The automatic backups of this user, whatever version of the front end made them. If there are
/// none, the folder in which all of them would be.
QStringList automaticBackups();

/// One or the other: those in @p paths, if any are named.
QStringList filesInOrAutomatic(const QStringList &paths);

} // namespace BackupFinder
