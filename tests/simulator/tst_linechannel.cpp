#include "channel/replybuffer.h"
#include "simulator/channelobserver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QtTest>

namespace {

class Recorder final : public ChannelObserver
{
public:
    void exchanged(const Exchange &exchange) override { exchanges << exchange; }

    QVector<Exchange> exchanges;
};

} // namespace

class TestLineChannel : public QObject
{
    Q_OBJECT

private slots:
    void commandsAreFormatted()
    {
        ScriptedChannel channel;
        QCOMPARE(channel.sendCommand("config config t%02d %s 100%%", 7, "x"), 0);
        QCOMPARE(channel.trace(), QStringList("sendCommand config config t07 x 100%"));
    }

    void longCommandsAreNotCut()
    {
        ScriptedChannel channel;
        const QByteArray text(5000, 'x');
        QCOMPARE(channel.sendCommand("%s", text.constData()), 0);
        QCOMPARE(channel.trace(), QStringList("sendCommand " + QString::fromLatin1(text)));
    }

    void repliesAreCutToTheBuffer()
    {
        ScriptedChannel channel;
        channel.answer("q", QByteArray(300, 'x'));
        QByteArray buffer(LineChannel::replyCapacity + 1, '#');
        QCOMPARE(channel.queryString(buffer.data(), "q"), 0);
        QCOMPARE(buffer, QByteArray(199, 'x') + '\0' + '#');
    }

    void aFailedQueryLeavesTheBufferAlone()
    {
        ScriptedChannel channel;
        ReplyBuffer reply;
        channel.answer("q", "before");
        QCOMPARE(channel.queryString(reply.data(), "q"), 0);
        channel.fail("q");
        QVERIFY(channel.queryString(reply.data(), "q") != 0);
        QVERIFY(channel.sendCommandReply(reply.data(), "q") != 0);
        QCOMPARE(reply.text(), QString("before"));
    }

    void numbersAndTruthValuesAreConverted_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("asInt");
        QTest::addColumn<double>("asDouble");
        QTest::addColumn<int>("asBool"); // -1 stands for a failure in these columns
        QTest::newRow("number") << QByteArray(" 12 ") << 12 << 12.0 << -1;
        QTest::newRow("fraction") << QByteArray("0.25") << -1 << 0.25 << -1;
        QTest::newRow("one") << QByteArray("1") << 1 << 1.0 << 1;
        QTest::newRow("zero") << QByteArray("0") << 0 << 0.0 << 0;
        QTest::newRow("yes") << QByteArray("yes") << -1 << -1.0 << 1;
        QTest::newRow("no") << QByteArray("No") << -1 << -1.0 << 0;
        QTest::newRow("word") << QByteArray("word") << -1 << -1.0 << -1;
        QTest::newRow("nothing") << QByteArray("") << -1 << -1.0 << -1;
        QTest::newRow("too big") << QByteArray("99999999999") << -1 << 99999999999.0 << -1;
    }

    void numbersAndTruthValuesAreConverted()
    {
        QFETCH(const QByteArray, answer);
        QFETCH(const int, asInt);
        QFETCH(const double, asDouble);
        QFETCH(const int, asBool);
        ScriptedChannel channel;
        channel.answer("q", answer);
        int number = -1;
        double fraction = -1;
        bool truth = asBool != 1;
        QCOMPARE(channel.queryInt(&number, "q") == 0, asInt != -1);
        QCOMPARE(channel.queryDouble(&fraction, "q") == 0, asDouble != -1.0);
        QCOMPARE(channel.queryBool(&truth, "q") == 0, asBool != -1);
        QCOMPARE(number, asInt);
        QCOMPARE(fraction, asDouble);
        QCOMPARE(truth, asBool == -1 || asBool == 1);
    }

    void theObserverSeesEveryExchange()
    {
        ScriptedChannel channel;
        Recorder recorder;
        channel.setObserver(&recorder);
        channel.answer("config number_of_configs", "many");
        channel.fail("config desc \"x\"");
        ReplyBuffer reply;
        channel.sendCommandReply(reply.data(), "veltra2 config delete_config %s", "x");
        int number = 0;
        QVERIFY(channel.queryInt(&number, "config number_of_configs") != 0);
        QVERIFY(channel.sendCommand("config desc \"%s\"", "x") != 0);

        QCOMPARE(recorder.exchanges.size(), 3);
        const Exchange &deletion = recorder.exchanges.at(0);
        QCOMPARE(LineChannel::nameOf(deletion.operation), "sendCommandReply");
        QCOMPARE(deletion.command, QByteArray("veltra2 config delete_config x"));
        QCOMPARE(deletion.answer, QByteArray("veltra2 ok"));
        QCOMPARE(deletion.result, 0);
        QCOMPARE(deletion.failureReason, QString());
        QVERIFY(deletion.microseconds >= 0);
        const Exchange &count = recorder.exchanges.at(1);
        QCOMPARE(LineChannel::nameOf(count.operation), "queryInt");
        QCOMPARE(count.answer, QByteArray("many"));
        QVERIFY(count.result != 0);
        QVERIFY(!count.failureReason.isEmpty());
        QVERIFY(recorder.exchanges.at(2).result != 0);
    }

    void anObserverCanBeTakenOff()
    {
        ScriptedChannel channel;
        Recorder recorder;
        channel.setObserver(&recorder);
        channel.setObserver(nullptr);
        channel.sendCommand("x");
        QVERIFY(recorder.exchanges.isEmpty());
    }
};

VELTRA4_TEST(TestLineChannel)
#include "tst_linechannel.moc"
