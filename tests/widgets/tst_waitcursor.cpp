#include "tests/support/testmain.h"
#include "widgets/waitcursor.h"

#include <QCursor>
#include <QGuiApplication>
#include <QTest>

namespace {

bool applicationWaits()
{
    const QCursor *cursor = QGuiApplication::overrideCursor();
    return cursor != nullptr && cursor->shape() == Qt::WaitCursor;
}

} // namespace

class TestWaitCursor : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        while (QGuiApplication::overrideCursor()) {
            QGuiApplication::restoreOverrideCursor();
        }
    }

    void itWaitsForAsLongAsItLivesAndNests()
    {
        {
            const WaitCursor outer;
            QVERIFY(applicationWaits());
            {
                const WaitCursor inner;
                QVERIFY(applicationWaits());
            }
            QVERIFY(applicationWaits());
        }
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void itMayBeTakenBackEarlyAndOnlyOnce()
    {
        const WaitCursor outer;
        {
            WaitCursor inner;
            inner.restore();
            inner.restore();
            QVERIFY(applicationWaits());
        }
        QVERIFY(applicationWaits());
    }

    void itMayBeLeftOn()
    {
        {
            WaitCursor cursor;
            cursor.abandon();
        }
        QVERIFY(applicationWaits());
        QGuiApplication::restoreOverrideCursor();
        QVERIFY(!QGuiApplication::overrideCursor());
    }
};

VELTRA4_TEST(TestWaitCursor)
#include "tst_waitcursor.moc"
