#include "tests/endtoend/operations.h"
#include "tests/support/testmain.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QTimer>
#include <QtTest>

#include <algorithm>

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
    void initTestCase()
    {
        for (const Operation &operation : allOperations()) {
            if (operation.name == QByteArray("refresh")) {
                m_refresh = playUndisturbed(operation);
            }
        }
        QVERIFY(!m_refresh.isEmpty());
    }

    void theHostLeavesWithinEachCall_data() { addOperations(); }

    // The ways to leave take turns, but for the calls in which hosts are most likely to leave: the
    // first, the last, and those that tell them something.
    void theHostLeavesWithinEachCall()
    {
        QFETCH(const Operation, operation);
        const QVector<Call> calls = playUndisturbed(operation);
        QVERIFY(!calls.isEmpty());
        for (const int call : callsToLeaveIn(calls)) {
            const bool takesAllTurns =
                calls.at(call - 1).tells || call == 1 || call == calls.size();
            for (int turn = 0; turn < pullCount; ++turn) {
                if (takesAllTurns || turn == call % pullCount) {
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
        QByteArray command; // empty for a time-out or a message
        bool tells;         // the host something
    };

    static QVector<Call> playUndisturbed(const Operation &operation)
    {
        Scene scene(smallState());
        operation.prepare(scene);
        QVector<Call> calls;
        QByteArray command;
        Record &record = scene.record;
        record.takeMessages();
        record.onCommand = [&](const QByteArray &sent) { command = sent; };
        record.onCall = [&] {
            calls.append({command, !record.takeMessages().isEmpty()});
            command.clear();
        };
        operation.play(scene);
        record.onCommand = {};
        record.onCall = {};
        scene.driver.verify();
        return calls;
    }

    bool isRefreshAt(const QVector<Call> &calls, int begin) const
    {
        return begin >= 0 && begin + m_refresh.size() <= calls.size()
            && std::equal(m_refresh.cbegin(), m_refresh.cend(), calls.cbegin() + begin,
                          [](const Call &left, const Call &right) {
                              return left.command == right.command && left.tells == right.tells;
                          });
    }

    // Counted from 1. Nearly all operations begin and end with reading the list, which is an
    // operation of its own: of these calls only those at the borders are left in again.
    QVector<int> callsToLeaveIn(const QVector<Call> &calls) const
    {
        const bool isMore = calls.size() > m_refresh.size();
        const int first = isMore && isRefreshAt(calls, 0) ? m_refresh.size() : 1;
        const int lastRefresh = calls.size() - m_refresh.size();
        const int last = isMore && isRefreshAt(calls, lastRefresh) ? lastRefresh + 1 : calls.size();
        QVector<int> chosen;
        for (int call = first; call <= last; ++call) {
            chosen << call;
        }
        if (last < calls.size()) {
            chosen << calls.size();
        }
        return chosen;
    }

    static void playUntil(int lastCall, const Operation &operation, Pull pull)
    {
        Scene scene(smallState());
        operation.prepare(scene);
        int calls = 0;
        scene.record.onCall = [&] {
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

    QVector<Call> m_refresh; // what reading the list asks for, with nothing else around it
};

VELTRA4_TEST(TestEndToEndExitInCommand)
#include "tst_endtoendexitincommand.moc"
