#pragma once

#include "tests/support/filesizelimit.h"

#include <QByteArray>
#include <QCursor>
#include <QEvent>
#include <QFile>
#include <QGuiApplication>
#include <QMessageBox>
#include <QObject>
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

/// Notes of each message box whether the application shows the wait cursor while it is open.
class BoxCursors : public QObject
{
public:
    BoxCursors() { qApp->installEventFilter(this); }

    /// How many boxes there were, and whether any was open under the wait cursor.
    int boxes() const { return m_boxes; }
    bool wasAnyWaiting() const { return m_wasAnyWaiting; }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<QMessageBox *>(object)) {
            ++m_boxes;
            m_wasAnyWaiting = m_wasAnyWaiting || isWaiting();
        }
        return false;
    }

private:
    int m_boxes = 0;
    bool m_wasAnyWaiting = false;
};

} // namespace TransferTesting
