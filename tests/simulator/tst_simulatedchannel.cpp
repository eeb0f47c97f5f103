#include "channel/replybuffer.h"
#include "hostapi/messagereceiver.h"
#include "simulator/simulatedchannel.h"
#include "tests/simulator/answers.h"
#include "tests/simulator/recorder.h"
#include "tests/support/testmain.h"

namespace {

class Receiver final : public MessageReceiver
{
public:
    int receiveMessage(int id, const char *source, const char *text) override
    {
        received << QStringLiteral("%1 %2 %3").arg(id).arg(source, text);
        if (action) {
            action();
        }
        return 0;
    }

    QStringList received;
    std::function<void()> action;
};

} // namespace

/// A channel to a small controller that does not really wait.
class TestSimulatedChannel : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SimulatedController> m_controller;
    std::unique_ptr<SimulatedChannel> m_channel;
    Recorder m_recorder;
    qint64 m_sleptMs = 0;

    // The answer, or "failed" and the result.
    QByteArray ask(const QByteArray &query)
    {
        ReplyBuffer reply;
        const int result = m_channel->queryString(reply.data(), "%s", query.constData());
        return result == 0 ? reply.text().toLatin1() : "failed " + QByteArray::number(result);
    }

    void addFault(const QString &rule)
    {
        QString error;
        QVERIFY2(m_channel->faults().add(rule, &error), qPrintable(error));
    }

private slots:
    void init()
    {
        m_controller = std::make_unique<SimulatedController>(smallState());
        m_channel = std::make_unique<SimulatedChannel>(*m_controller);
        m_channel->setSleep([this](int milliseconds) { m_sleptMs += milliseconds; });
        m_channel->setObserver(&m_recorder);
        m_recorder.lines.clear();
        m_sleptMs = 0;
    }

    void aRefusalFailsAndIsExplained()
    {
        QCOMPARE(ask("config desc_of_config nobody"), "failed 1");
        QCOMPARE(m_recorder.lines,
                 QStringList("queryString config desc_of_config nobody failed 1: unknown "
                             "configuration 'nobody'"));
    }

    void timeoutsAndMessagesReachTheObserver()
    {
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(m_channel->setTimeout(0, 20000, 1), 0);
            QCOMPARE(m_channel->postMessage("standard", "VELTRA4", 1, "text"), 0);
            m_channel->setObserver(nullptr); // it is not missed
        }
        QCOMPARE(ask("system hostname"), "host");
        QCOMPARE(m_recorder.lines, QStringList({"timeout 0 20000 1", "standard VELTRA4 1 text"}));
    }

    void aSlowCommandFailsAfterTheTimeoutButIsExecuted()
    {
        QCOMPARE(m_channel->timeoutMs(), 5000);
        m_channel->setLatency(5000);
        QCOMPARE(ask("system hostname"), "host");
        m_channel->setLatency(5001);
        QCOMPARE(ask("config active_config second"), "failed 2");
        QCOMPARE(m_sleptMs, 2 * 5000);
        QCOMPARE(m_recorder.lines.at(1),
                 "queryString config active_config second failed 2: no answer within 5000 ms");
        QCOMPARE(m_controller->state().activeIdentifier, "second");
    }

    void theTimeoutStaysUntilTheNext()
    {
        m_channel->setLatency(6000);
        m_channel->setTimeout(0, 20000, 0);
        QCOMPARE(ask("system hostname"), "host");
        QCOMPARE(ask("system hostname"), "host");
        m_channel->setTimeout(0, -1, 0);
        QCOMPARE(ask("system hostname"), "failed 2");
        QCOMPARE(m_sleptMs, 12000);
    }

    void hugeLatenciesDoNotOverflow()
    {
        m_channel->setLatency(std::numeric_limits<int>::max());
        addFault("*~2147483647");
        QCOMPARE(ask("system hostname"), "failed 2");
        QCOMPARE(m_sleptMs, 5000);
    }

    void aFailedCommandDoesNotReachTheController()
    {
        addFault("1");
        QCOMPARE(m_channel->sendCommand("config active_config second"), 3);
        QVERIFY(m_controller->state() == smallState());
        QCOMPARE(
            m_recorder.lines,
            QStringList("sendCommand config active_config second failed 3: failed on purpose"));
        QCOMPARE(m_channel->sendCommand("config active_config second"), 0);
    }

    void aWrongAnswerIsGivenAfterExecutionOrInsteadOfARefusal()
    {
        addFault("veltra2 *=nonsense");
        QCOMPARE(ask("veltra2 config delete_config second"), "nonsense");
        QCOMPARE(m_controller->state().configurations.size(), 2);
        addFault("config config t09=" + QString(5000, 'x')); // is cut to the buffer
        QCOMPARE(ask("config config t09"), QByteArray(199, 'x'));
    }

    void aDelayedCommandMayTimeOut()
    {
        addFault("2~9000");
        QCOMPARE(ask("system hostname"), "host");
        QCOMPARE(ask("system hostname"), "failed 2");
        QCOMPARE(ask("system hostname"), "host");
        QCOMPARE(m_sleptMs, 5000);
    }

    void receiversAreRemovedByThemselvesNotByName()
    {
        Receiver one;
        Receiver other;
        QCOMPARE(m_channel->addMessageReceiver("ConfigurationsModule", &one), 0);
        QCOMPARE(m_channel->addMessageReceiver("ServiceModule", &other), 0);
        QVERIFY(m_channel->addMessageReceiver("ServiceModule", nullptr) != 0);
        m_channel->deliverMessage(7, "Veltra2", "v4.1");
        QCOMPARE(m_channel->removeMessageReceiver("ServiceModule", &one), 0);
        QVERIFY(m_channel->removeMessageReceiver("ServiceModule", &one) != 0);
        QCOMPARE(m_channel->receiverCount(), 1);
        m_channel->deliverMessage(1, "a", "b");
        QCOMPARE(one.received, QStringList("7 Veltra2 v4.1"));
        QCOMPARE(other.received, QStringList({"7 Veltra2 v4.1", "1 a b"}));
    }

    void aReceiverMayGoDuringAMessage()
    {
        Receiver one;
        Receiver other;
        one.action = [&] {
            m_channel->removeMessageReceiver("", &one);
            m_channel->removeMessageReceiver("", &other);
        };
        m_channel->addMessageReceiver("", &one);
        m_channel->addMessageReceiver("", &other);
        m_channel->deliverMessage(1, "a", "b");
        QCOMPARE(one.received.size(), 1);
        QVERIFY(other.received.isEmpty());
        QCOMPARE(m_channel->receiverCount(), 0);
    }
};

VELTRA4_TEST(TestSimulatedChannel)
#include "tst_simulatedchannel.moc"
