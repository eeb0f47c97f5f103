#include "channel/replybuffer.h"
#include "hostapi/messagereceiver.h"
#include "simulator/channelobserver.h"
#include "simulator/simulatedchannel.h"
#include "tests/simulator/answers.h"
#include "tests/support/testmain.h"

#include <QtTest>

namespace {

class Recorder final : public ChannelObserver
{
public:
    void exchanged(const Exchange &exchange) override
    {
        lines << QString::fromLatin1(exchange.command) + " -> "
                + QString::fromLatin1(exchange.answer) + ' ' + exchange.failureReason;
    }
    void timeoutSet(int channel, int milliseconds, int flag) override
    {
        lines << QStringLiteral("timeout %1 %2 %3").arg(channel).arg(milliseconds).arg(flag);
    }
    void messagePosted(const QByteArray &category, const QByteArray &source, int level,
                       const QByteArray &text) override
    {
        lines << QString::fromLatin1(category + ' ' + source + ' ' + QByteArray::number(level) + ' '
                                     + text);
    }

    QStringList lines;
};

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

// A channel to a small controller that does not really wait.
struct Setup
{
    Setup()
    {
        channel.setSleep([this](int milliseconds) { sleptMs += milliseconds; });
        channel.setObserver(&recorder);
    }

    // The answer, or "failed" and the result.
    QByteArray ask(const QByteArray &query)
    {
        ReplyBuffer reply;
        const int result = channel.queryString(reply.data(), "%s", query.constData());
        return result == 0 ? reply.text().toLatin1() : "failed " + QByteArray::number(result);
    }

    SimulatedController controller{smallState()};
    SimulatedChannel channel{controller};
    Recorder recorder;
    qint64 sleptMs = 0;
};

} // namespace

class TestSimulatedChannel : public QObject
{
    Q_OBJECT

private slots:
    void everyOperationReachesTheController()
    {
        Setup setup;
        ReplyBuffer reply;
        int count = 0;
        double freeSpace = 0;
        bool isEmbedded = false;
        SimulatedChannel &channel = setup.channel;
        QCOMPARE(
            channel.sendCommandReply(reply.data(), "veltra2 config delete_config %s", "second"), 0);
        QCOMPARE(reply.text(), QString("veltra2 ok"));
        QCOMPARE(channel.queryString(reply.data(), "config desc_of_config %s", "first"), 0);
        QCOMPARE(reply.text(), QString("\"First one\""));
        QCOMPARE(channel.queryInt(&count, "config number_of_configs"), 0);
        QCOMPARE(count, 2);
        QCOMPARE(channel.queryDouble(&freeSpace, "config free_space"), 0);
        QVERIFY(freeSpace > 0.9 && freeSpace < 1.0);
        QCOMPARE(channel.queryBool(&isEmbedded, "system controller_embedded"), 0);
        QVERIFY(isEmbedded);
        QCOMPARE(channel.sendCommand("config active_config %s", "standard"), 0);
        QCOMPARE(setup.controller.state().activeIdentifier, QByteArray("standard"));
    }

    void aRefusalFailsAndIsExplained()
    {
        Setup setup;
        QCOMPARE(setup.ask("config desc_of_config nobody"), QByteArray("failed 1"));
        QCOMPARE(setup.recorder.lines,
                 QStringList("config desc_of_config nobody ->  unknown configuration 'nobody'"));
    }

    void timeoutsAndMessagesReachTheObserver()
    {
        Setup setup;
        QCOMPARE(setup.channel.setTimeout(0, 20000, 1), 0);
        QCOMPARE(setup.channel.postMessage("standard", "VELTRA4", 1, "text"), 0);
        QCOMPARE(setup.recorder.lines,
                 QStringList({"timeout 0 20000 1", "standard VELTRA4 1 text"}));
    }

    void withoutAnObserverNothingIsMissed()
    {
        Setup setup;
        setup.channel.setObserver(nullptr);
        QCOMPARE(setup.channel.setTimeout(0, 1, 1), 0);
        QCOMPARE(setup.channel.postMessage("standard", "VELTRA4", 1, "text"), 0);
        QCOMPARE(setup.ask("system hostname"), QByteArray("host"));
    }

    void latencyIsWaitedFor()
    {
        Setup setup;
        setup.channel.setLatency(30);
        setup.ask("system hostname");
        setup.ask("no command");
        QCOMPARE(setup.sleptMs, 60);
    }

    void aSlowCommandFailsAfterTheTimeout()
    {
        Setup setup;
        QCOMPARE(setup.channel.timeoutMs(), 5000);
        setup.channel.setLatency(5001);
        QCOMPARE(setup.ask("system hostname"), QByteArray("failed 2"));
        QCOMPARE(setup.sleptMs, 5000);
        QCOMPARE(setup.recorder.lines, QStringList("system hostname ->  no answer within 5000 ms"));
    }

    void aSlowCommandIsExecutedAllTheSame()
    {
        Setup setup;
        setup.channel.setLatency(6000);
        QVERIFY(setup.channel.sendCommand("config active_config second") != 0);
        QCOMPARE(setup.controller.state().activeIdentifier, QByteArray("second"));
    }

    void theTimeoutStaysUntilTheNext()
    {
        Setup setup;
        setup.channel.setLatency(6000);
        setup.channel.setTimeout(0, 20000, 0);
        QCOMPARE(setup.ask("system hostname"), QByteArray("host"));
        QCOMPARE(setup.ask("system hostname"), QByteArray("host"));
        setup.channel.setTimeout(0, -1, 0);
        QCOMPARE(setup.ask("system hostname"), QByteArray("failed 2"));
        QCOMPARE(setup.sleptMs, 12000);
    }

    void aLatencyOfTheTimeoutIsStillInTime()
    {
        Setup setup;
        setup.channel.setLatency(5000);
        QCOMPARE(setup.ask("system hostname"), QByteArray("host"));
    }

    void hugeLatenciesDoNotOverflow()
    {
        Setup setup;
        setup.channel.setLatency(std::numeric_limits<int>::max());
        QString error;
        QVERIFY(setup.channel.faults().add("*~2147483647", &error));
        QCOMPARE(setup.ask("system hostname"), QByteArray("failed 2"));
        QCOMPARE(setup.sleptMs, 5000);
    }

    void aFailedCommandDoesNotReachTheController()
    {
        Setup setup;
        setup.channel.faults().addNth(1);
        QCOMPARE(setup.channel.sendCommand("config active_config second"), 3);
        QVERIFY(setup.controller.state() == smallState());
        QCOMPARE(setup.recorder.lines,
                 QStringList("config active_config second ->  failed on purpose"));
        QCOMPARE(setup.channel.sendCommand("config active_config second"), 0);
    }

    void aWronglyAnsweredCommandIsExecuted()
    {
        Setup setup;
        setup.channel.faults().addNth(1, {Fault::Kind::Answer, "nonsense", 0});
        ReplyBuffer reply;
        QCOMPARE(
            setup.channel.sendCommandReply(reply.data(), "veltra2 config delete_config second"), 0);
        QCOMPARE(reply.text(), QString("nonsense"));
        QCOMPARE(setup.controller.state().configurations.size(), 2);
    }

    void aWrongAnswerAlsoCoversARefusal()
    {
        Setup setup;
        setup.channel.faults().addNth(1, {Fault::Kind::Answer, "7", 0});
        QCOMPARE(setup.ask("config config t09"), QByteArray("7"));
    }

    void aLongWrongAnswerIsCutToTheBuffer()
    {
        Setup setup;
        setup.channel.faults().addNth(1, {Fault::Kind::Answer, QByteArray(5000, 'x'), 0});
        QCOMPARE(setup.ask("system hostname"), QByteArray(199, 'x'));
    }

    void aDelayedCommandMayTimeOut()
    {
        Setup setup;
        QString error;
        QVERIFY(setup.channel.faults().add("2~9000", &error));
        QCOMPARE(setup.ask("system hostname"), QByteArray("host"));
        QCOMPARE(setup.ask("system hostname"), QByteArray("failed 2"));
        QCOMPARE(setup.ask("system hostname"), QByteArray("host"));
        QCOMPARE(setup.sleptMs, 5000);
    }

    void messagesReachEveryReceiver()
    {
        Setup setup;
        Receiver one;
        Receiver other;
        QCOMPARE(setup.channel.addMessageReceiver("a", &one), 0);
        QCOMPARE(setup.channel.addMessageReceiver("a", &other), 0);
        QVERIFY(setup.channel.addMessageReceiver("a", nullptr) != 0);
        setup.channel.deliverMessage(7, "Veltra2", "v4.1");
        QCOMPARE(one.received, QStringList("7 Veltra2 v4.1"));
        QCOMPARE(other.received, one.received);
    }

    void receiversAreRemovedByThemselvesNotByName()
    {
        Setup setup;
        Receiver one;
        Receiver other;
        setup.channel.addMessageReceiver("ConfigurationsModule", &one);
        setup.channel.addMessageReceiver("ServiceModule", &other);
        QCOMPARE(setup.channel.removeMessageReceiver("ServiceModule", &one), 0);
        QVERIFY(setup.channel.removeMessageReceiver("ServiceModule", &one) != 0);
        QCOMPARE(setup.channel.receiverCount(), 1);
        setup.channel.deliverMessage(1, "a", "b");
        QVERIFY(one.received.isEmpty());
        QCOMPARE(other.received.size(), 1);
    }

    void aReceiverMayGoDuringAMessage()
    {
        Setup setup;
        Receiver one;
        Receiver other;
        one.action = [&] {
            setup.channel.removeMessageReceiver("", &one);
            setup.channel.removeMessageReceiver("", &other);
        };
        setup.channel.addMessageReceiver("", &one);
        setup.channel.addMessageReceiver("", &other);
        setup.channel.deliverMessage(1, "a", "b");
        QCOMPARE(one.received.size(), 1);
        QVERIFY(other.received.isEmpty());
        QCOMPARE(setup.channel.receiverCount(), 0);
    }
};

VELTRA4_TEST(TestSimulatedChannel)
#include "tst_simulatedchannel.moc"
