#pragma once

#include "tests/support/modaldriver.h"

#include <QByteArray>
#include <QCursor>
#include <QFile>
#include <QGuiApplication>
#include <QString>

/// What the tests of saving, backing up, loading and restoring have in common.
namespace TransferTesting {

/// What the file holds, or "(no file)".
inline QByteArray contentsOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

/// Writes a file and gives its name back.
inline QString writeFile(const QString &fileName, const QByteArray &contents)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()) {
        qFatal("cannot write %s", qPrintable(fileName));
    }
    return fileName;
}

/// True while the application shows the wait cursor.
inline bool isWaiting()
{
    const QCursor *cursor = QGuiApplication::overrideCursor();
    return cursor != nullptr && cursor->shape() == Qt::WaitCursor;
}

/// Takes all cursors back that are shown over the application's own, and tells how many there were.
inline int takeCursors()
{
    int count = 0;
    while (QGuiApplication::overrideCursor()) {
        QGuiApplication::restoreOverrideCursor();
        ++count;
    }
    return count;
}

/// What to expect of a message box with a single button, Ok.
inline ExpectedBox okBox(QMessageBox::Icon icon, const QString &title, const QString &text,
                         QWidget *parent)
{
    ExpectedBox box;
    box.icon = icon;
    box.title = title;
    box.text = text;
    box.parent = parent;
    return box;
}

/// The same of a question, whose default is No.
inline ExpectedBox yesNoBox(QMessageBox::Icon icon, const QString &title, const QString &text,
                            QWidget *parent, QMessageBox::StandardButton answer)
{
    ExpectedBox box = okBox(icon, title, text, parent);
    box.buttons = QMessageBox::Yes | QMessageBox::No;
    box.defaultButton = QMessageBox::No;
    box.answer = answer;
    return box;
}

/// The question that each restore begins with.
inline ExpectedBox restoreConfirmation(QWidget *parent, QMessageBox::StandardButton answer)
{
    return yesNoBox(QMessageBox::Warning, "Confirmation",
                    "Restoring this backup overwrites all settings and already existing "
                    "configurations.\n\nAny previous settings will get lost!\n\nProceed?",
                    parent, answer);
}

} // namespace TransferTesting
