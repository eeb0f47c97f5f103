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
    void commandsAreFormattedAndNotCut()
    {
        ScriptedChannel channel;
        const QByteArray text(5000, 'x');
        QCOMPARE(channel.sendCommand("config config t%02d %s 100%%", 7, text.constData()), 0);
        QCOMPARE(channel.trace(), QStringList("sendCommand config config t07 " + text + " 100%"));
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
        QTest::addColumn<int>("asInt"); // of the answer that is the row's name
        QTest::addColumn<double>("asDouble");
        QTest::addColumn<int>("asBool"); // -1 stands for a failure in these columns
        QTest::newRow(" 12 ") << 12 << 12.0 << -1;
        QTest::newRow("0.25") << -1 << 0.25 << -1;
        QTest::newRow("1") << 1 << 1.0 << 1;
        QTest::newRow("0") << 0 << 0.0 << 0;
        QTest::newRow("yes") << -1 << -1.0 << 1;
        QTest::newRow("No") << -1 << -1.0 << 0;
        QTest::newRow("true") << -1 << -1.0 << 1;
        QTest::newRow("false") << -1 << -1.0 << 0;
        QTest::newRow("word") << -1 << -1.0 << -1;
        QTest::newRow("") << -1 << -1.0 << -1;
        QTest::newRow("99999999999") << -1 << 99999999999.0 << -1;
    }

    void numbersAndTruthValuesAreConverted()
    {
        QFETCH(const int, asInt);
        QFETCH(const double, asDouble);
        QFETCH(const int, asBool);
        ScriptedChannel channel;
        channel.answer("q", QTest::currentDataTag());
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
        channel.setObserver(nullptr);
        channel.sendCommand("x");
        QCOMPARE(recorder.exchanges.size(), 3);
    }
};

VELTRA4_TEST(TestLineChannel)
#include "tst_linechannel.moc"
