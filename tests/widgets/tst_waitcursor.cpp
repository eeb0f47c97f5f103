#include "tests/support/testmain.h"
#include "widgets/waitcursor.h"

#include <QCursor>
#include <QGuiApplication>
#include <QtTest>

class TestWaitCursor : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void itWaitsForAsLongAsItLives();
    void itNests();
    void itMayBeTakenBackEarlyAndOnlyOnce();
    void itMayBeLeftOn();
};

namespace {

bool applicationWaits()
{
    const QCursor *cursor = QGuiApplication::overrideCursor();
    return cursor != nullptr && cursor->shape() == Qt::WaitCursor;
}

} // namespace

void TestWaitCursor::cleanup()
{
    while (QGuiApplication::overrideCursor()) {
        QGuiApplication::restoreOverrideCursor();
    }
}

void TestWaitCursor::itWaitsForAsLongAsItLives()
{
    {
        const WaitCursor cursor;
        QVERIFY(applicationWaits());
    }
    QVERIFY(!QGuiApplication::overrideCursor());
}

void TestWaitCursor::itNests()
{
    const WaitCursor outer;
    {
        const WaitCursor inner;
        QVERIFY(applicationWaits());
    }
    QVERIFY(applicationWaits());
}

void TestWaitCursor::itMayBeTakenBackEarlyAndOnlyOnce()
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

void TestWaitCursor::itMayBeLeftOn()
{
    {
        WaitCursor cursor;
        cursor.abandon();
    }
    QVERIFY(applicationWaits());
    QGuiApplication::restoreOverrideCursor();
    QVERIFY(!QGuiApplication::overrideCursor());
}

VELTRA4_TEST(TestWaitCursor)
#include "tst_waitcursor.moc"
