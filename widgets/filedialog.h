#pragma once

#include <QString>

class QObject;
class QWidget;

/// The one place that asks for a file.
///
/// The answer is an absolute path, empty when the user cancels. It is empty as well once the @p
/// owner, the object whose code goes on after the dialog, has been destroyed by the host meanwhile;
/// callers take both as the end of their operation and return at once without touching any member.
namespace FileDialog {

/// Asks for an existing file, starting in @p directory.
QString openFileName(const QObject *owner, QWidget *parent, const QString &caption,
                     const QString &directory, const QString &filter);

/// Asks where to save, starting with @p proposal, a path with a file name. The user confirms that
/// an existing file may be overwritten. The answer is trimmed and ends with @p extension, ".dat"
/// for example; without one it is as it was typed.
QString saveFileName(const QObject *owner, QWidget *parent, const QString &caption,
                     const QString &proposal, const QString &filter, const QString &extension = {});

} // namespace FileDialog
