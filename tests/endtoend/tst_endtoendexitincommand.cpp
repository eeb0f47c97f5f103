#include "tests/endtoend/operations.h"
#include "tests/support/testmain.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QTimer>
#include <QtTest>

namespace {

using Step = Operation::Step;

void release(FrontEnd &frontEnd)
{
    frontEnd.release();
}

void destroyWindow(FrontEnd &frontEnd)
{
    frontEnd.destroyWindow();
}

// The host's channel waits for the answer in an event loop, and there the host is closed.
void closeWhileWaiting(FrontEnd &frontEnd)
{
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
        frontEnd.release();
        frontEnd.destroyWindow();
        loop.quit();
    });
    loop.exec();
}

using Pull = void (*)(FrontEnd &frontEnd);
const Pull pulls[] = {release, destroyWindow, closeWhileWaiting};
constexpr int pullCount = 3;

} // namespace

Q_DECLARE_METATYPE(Operation::Step)

/// The host takes everything away within a call of its own channel, while the plug-in waits for it
/// to return.
class TestEndToEndExitInCommand : public QObject
{
    Q_OBJECT

private slots:
    void theHostLeavesWithinEachCall_data();
    void theHostLeavesWithinEachCall();

private:
    static QVector<bool> playUndisturbed(Step prepare, Step play);
    static void playUntil(int lastCall, Step prepare, Step play, Pull pull);
};

// Returns of each call whether it posted a message.
QVector<bool> TestEndToEndExitInCommand::playUndisturbed(Step prepare, Step play)
{
    Scene scene;
    prepare(scene);
    QVector<bool> calls;
    Record &record = scene.frontEnd.record;
    record.takeMessages();
    record.onCall = [&] { calls << !record.takeMessages().isEmpty(); };
    play(scene);
    record.onCall = {};
    scene.frontEnd.driver.verify();
    return calls;
}

void TestEndToEndExitInCommand::playUntil(int lastCall, Step prepare, Step play, Pull pull)
{
    Scene scene;
    prepare(scene);
    int calls = 0;
    scene.frontEnd.record.onCall = [&] {
        if (++calls == lastCall) {
            pull(scene.frontEnd);
        }
    };
    play(scene);
    QCOMPARE(calls, lastCall); // the plug-in falls silent
    QCOMPARE(scene.frontEnd.channel.receiverCount(), 0);
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(!QGuiApplication::overrideCursor());
    for (const QString &problem : scene.frontEnd.driver.takeProblems()) {
        QVERIFY2(problem.startsWith("never seen"), qPrintable(problem));
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    scene.frontEnd.triggerAction(); // the menu may still show it
}

void TestEndToEndExitInCommand::theHostLeavesWithinEachCall_data()
{
    QTest::addColumn<Step>("prepare");
    QTest::addColumn<Step>("play");
    const auto operations = allOperations();
    for (const Operation &operation : operations) {
        QTest::newRow(operation.name) << operation.prepare << operation.play;
    }
}

// The ways to leave take turns, but for the calls in which hosts are most likely to leave: the
// first, the last, and those that tell them something.
void TestEndToEndExitInCommand::theHostLeavesWithinEachCall()
{
    QFETCH(const Step, prepare);
    QFETCH(const Step, play);
    const QVector<bool> calls = playUndisturbed(prepare, play);
    QVERIFY(!calls.isEmpty());
    for (int call = 1; call <= calls.size(); ++call) {
        const bool takesAllTurns = calls.at(call - 1) || call == 1 || call == calls.size();
        for (int turn = 0; turn < pullCount; ++turn) {
            if (takesAllTurns || turn == call % pullCount) {
                playUntil(call, prepare, play, pulls[turn]);
            }
            if (QTest::currentTestFailed()) {
                qWarning("call %d of %d, turn %d", call, calls.size(), turn);
                return;
            }
        }
    }
}

VELTRA4_TEST(TestEndToEndExitInCommand)
#include "tst_endtoendexitincommand.moc"
