#pragma once

#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/transfer/transfertesting.h"

#include <QDialog>
#include <QEvent>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// Fails the test if a box opens under the wait cursor.
class BoxWatch : public QObject
{
public:
    BoxWatch() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<QMessageBox *>(object)
            && TransferTesting::isWaiting()) {
            QTest::qFail("a box opens under the wait cursor", __FILE__, __LINE__);
        }
        return false;
    }
};

/// What a procedure needs to run: a controller, a dialog with its parent, somebody who answers the
/// windows, and a folder for files. Fails the test if a box opens under the wait cursor or if the
/// wait cursor stays in the end.
struct TransferStage
{
    ~TransferStage() { QCOMPARE(TransferTesting::takeCursors(), 0); }

    QString path(const QString &name) const { return folder.filePath(name); }

    /// Notes whether the wait cursor is shown while @p command is executed.
    void noteCursorAt(const QByteArray &command)
    {
        channel.whenSent(command, [this] { cursors << TransferTesting::isWaiting(); });
    }

    /// Expects a box during which the host destroys the dialogs.
    void expectDestruction()
    {
        driver.expectDialog({}, [this](QDialog *) { parent.reset(); });
    }

    QTemporaryDir folder;
    ScriptedChannel channel;
    std::unique_ptr<QDialog> parent = std::make_unique<QDialog>();
    QDialog *dialog = new QDialog(parent.get()); // the parent's
    QList<bool> cursors;                         ///< what noteCursorAt() has noted, in order
    BoxWatch boxWatch;
    ModalDriver driver;
};
