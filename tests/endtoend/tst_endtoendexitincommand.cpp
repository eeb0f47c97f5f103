#include "tests/endtoend/operations.h"
#include "tests/support/quickstyle.h"
#include "tests/support/testmain.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QSet>
#include <QTimer>
#include <QTest>

namespace {

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

/// The host takes everything away within a call of its own channel, while the plug-in waits for it
/// to return.
class TestEndToEndExitInCommand : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QuickStyle::use(); }

    void theHostLeavesWithinEachCall_data() { addOperations(); }

    // The ways to leave take turns, but for the calls that tell the host something: in those it is
    // most likely to leave.
    void theHostLeavesWithinEachCall()
    {
        QFETCH(const Operation, operation);
        const QVector<Call> calls = playUndisturbed(operation);
        QVERIFY(!calls.isEmpty());
        for (int call = 1; call <= calls.size(); ++call) {
            if (!isNew(calls, call) && call != calls.size()) {
                continue;
            }
            for (int turn = 0; turn < pullCount; ++turn) {
                if (calls.at(call - 1).tells || turn == call % pullCount) {
                    playUntil(call, operation, pulls[turn]);
                }
                if (QTest::currentTestFailed()) {
                    qWarning("call %d of %d, turn %d", call, calls.size(), turn);
                    return;
                }
            }
        }
    }

private:
    struct Call
    {
        QByteArray format; // empty for a time-out or a message
        bool tells;        // the host something
    };

    static QVector<Call> playUndisturbed(const Operation &operation)
    {
        Scene scene(smallState());
        operation.prepare(scene);
        QVector<Call> calls;
        Record &record = scene.record;
        record.takeMessages();
        record.onCall = [&](const QByteArray &format) {
            calls.append({format, !record.takeMessages().isEmpty()});
        };
        operation.play(scene);
        record.onCall = {};
        scene.driver.verify();
        return calls;
    }

    // Whether the host has not yet left in such a call after such a one: the rows of a list, the
    // chunks of a file and the list that nearly all operations end with are the same over and over.
    bool isNew(const QVector<Call> &calls, int call)
    {
        const QByteArray previous = call > 1 ? calls.at(call - 2).format : "begin";
        const QByteArray pair = previous + '|' + calls.at(call - 1).format;
        const bool isNew = !m_met.contains(pair);
        m_met << pair;
        return isNew;
    }

    static void playUntil(int lastCall, const Operation &operation, Pull pull)
    {
        Scene scene(smallState());
        operation.prepare(scene);
        int calls = 0;
        scene.record.onCall = [&](const QByteArray & /*format*/) {
            if (++calls == lastCall) {
                pull(scene);
            }
        };
        operation.play(scene);
        QCOMPARE(calls, lastCall); // the plug-in falls silent
        QCOMPARE(scene.channel.receiverCount(), 0);
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(!QGuiApplication::overrideCursor());
        for (const QString &problem : scene.driver.takeProblems()) {
            QVERIFY2(problem.startsWith("never seen"), qPrintable(problem));
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        scene.triggerAction(); // the menu may still show it
    }

    QSet<QByteArray> m_met;
};

VELTRA4_TEST(TestEndToEndExitInCommand)
#include "tst_endtoendexitincommand.moc"
