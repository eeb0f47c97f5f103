#include "hostapi/messagereceiver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QtTest>

namespace {

QString ask(ScriptedChannel *channel, const char *query)
{
    char reply[200] = "untouched";
    return channel->queryString(reply, "%s", query) == 0 ? QString::fromLatin1(reply)
                                                         : QStringLiteral("failed");
}

class IdleReceiver : public MessageReceiver
{
public:
    int receiveMessage(int /*id*/, const char * /*source*/, const char * /*text*/) override
    {
        return 0;
    }
};

} // namespace

class TestScriptedChannel : public QObject
{
    Q_OBJECT

private slots:
    void everyCallIsTraced()
    {
        ScriptedChannel channel;
        char reply[200] = "";
        int number = 0;
        double fraction = 0;
        bool truth = false;
        IdleReceiver receiver;
        channel.setTimeout(0, 20000, 1);
        channel.sendCommandReply(reply, "veltra2 config clone_config config%s %s", "1", "standard");
        channel.queryString(reply, "config config t%02d", 7);
        channel.queryInt(&number, "config number_of_configs");
        channel.queryDouble(&fraction, "config free_space");
        channel.queryBool(&truth, "system controller_embedded");
        channel.sendCommand("config owner \"%s\" ",
                            "K\xfc"
                            "che");
        channel.postMessage("standard", "VELTRA4", 1, "some text");
        channel.addMessageReceiver("ConfigurationsModule", &receiver);
        channel.removeMessageReceiver("ServiceModule", &receiver);
        QCOMPARE(
            channel.trace(),
            QStringList({"setTimeout 0 20000 1",
                         "sendCommandReply veltra2 config clone_config config1 standard",
                         "queryString config config t07", "queryInt config number_of_configs",
                         "queryDouble config free_space", "queryBool system controller_embedded",
                         QString::fromUtf8("sendCommand config owner \"K\u00fcche\" "),
                         ScriptedChannel::reported("some text"),
                         "addMessageReceiver ConfigurationsModule",
                         "removeMessageReceiver ServiceModule"}));
    }

    void aTakenTraceStartsAgain()
    {
        ScriptedChannel channel;
        channel.sendCommand("first");
        QCOMPARE(channel.takeTrace(), QStringList("sendCommand first"));
        channel.sendCommand("second");
        QCOMPARE(channel.trace(), QStringList("sendCommand second"));
        QCOMPARE(channel.commandCount(), 2);
    }

    void aScriptedAnswerStays()
    {
        ScriptedChannel channel;
        channel.answer("system hostname", "first");
        QCOMPARE(ask(&channel, "system hostname"), "first");
        QCOMPARE(ask(&channel, "system hostname"), "first");
        channel.answer("system hostname", "second");
        QCOMPARE(ask(&channel, "system hostname"), "second");
    }

    void answersComeInTurnAndTheLastOneStays()
    {
        ScriptedChannel channel;
        channel.answerInTurn("config is_changeable", {"no", "yes"});
        QCOMPARE(ask(&channel, "config is_changeable"), "no");
        QCOMPARE(ask(&channel, "config is_changeable"), "yes");
        QCOMPARE(ask(&channel, "config is_changeable"), "yes");
    }

    void anUnscriptedQueryFailsAndTouchesNothing()
    {
        ScriptedChannel channel;
        char reply[200] = "untouched";
        int number = 7;
        double fraction = 0.5;
        bool truth = true;
        QVERIFY(channel.queryString(reply, "system hostname") != 0);
        QVERIFY(channel.queryInt(&number, "config number_of_configs") != 0);
        QVERIFY(channel.queryDouble(&fraction, "config free_space") != 0);
        QVERIFY(channel.queryBool(&truth, "system controller_embedded") != 0);
        QCOMPARE(reply, "untouched");
        QCOMPARE(number, 7);
        QCOMPARE(fraction, 0.5);
        QCOMPARE(truth, true);
    }

    void anUnscriptedCommandSucceeds()
    {
        ScriptedChannel channel;
        char reply[200] = "";
        QCOMPARE(channel.sendCommand("config new_password none"), 0);
        QCOMPARE(channel.sendCommandReply(reply, "veltra2 config new_config hall"), 0);
        QCOMPARE(reply, "veltra2 ok");
    }

    void answersAreConverted_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("asNumber");
        QTest::addColumn<QString>("asFraction");
        QTest::addColumn<QString>("asTruth");
        const QString failed = "failed";
        QTest::newRow("number") << QByteArray("12") << "12"
                                << "12" << failed;
        QTest::newRow("negative") << QByteArray("-3") << "-3"
                                  << "-3" << failed;
        QTest::newRow("one") << QByteArray("1") << "1"
                             << "1"
                             << "true";
        QTest::newRow("zero") << QByteArray("0") << "0"
                              << "0"
                              << "false";
        QTest::newRow("fraction") << QByteArray("0.25") << failed << "0.25" << failed;
        QTest::newRow("yes") << QByteArray("yes") << failed << failed << "true";
        QTest::newRow("no") << QByteArray("no") << failed << failed << "false";
        QTest::newRow("word") << QByteArray("hall") << failed << failed << failed;
        QTest::newRow("empty") << QByteArray("") << failed << failed << failed;
    }

    void answersAreConverted()
    {
        QFETCH(const QByteArray, answer);
        QFETCH(const QString, asNumber);
        QFETCH(const QString, asFraction);
        QFETCH(const QString, asTruth);
        ScriptedChannel channel;
        channel.answer("query", answer);
        int number = 0;
        double fraction = 0;
        bool truth = false;
        const bool isNumber = channel.queryInt(&number, "query") == 0;
        const bool isFraction = channel.queryDouble(&fraction, "query") == 0;
        const bool isTruth = channel.queryBool(&truth, "query") == 0;
        QCOMPARE(isNumber ? QString::number(number) : "failed", asNumber);
        QCOMPARE(isFraction ? QString::number(fraction) : "failed", asFraction);
        QCOMPARE(isTruth ? QVariant(truth).toString() : "failed", asTruth);
    }

    void aLongAnswerIsCut()
    {
        ScriptedChannel channel;
        channel.answer("system hostname", QByteArray(300, 'x'));
        QByteArray buffer(300, '#');
        channel.queryString(buffer.data(), "system hostname");
        QCOMPARE(buffer, QByteArray(199, 'x') + '\0' + QByteArray(100, '#'));
    }

    void aCommandFailsUntilItMaySucceed()
    {
        ScriptedChannel channel;
        channel.answer("system hostname", "hall");
        channel.fail("system hostname");
        channel.fail("config new_password none");
        QCOMPARE(ask(&channel, "system hostname"), "failed");
        QVERIFY(channel.sendCommand("config new_password none") != 0);
        channel.succeed("system hostname");
        QCOMPARE(ask(&channel, "system hostname"), "hall");
        QVERIFY(channel.sendCommand("config new_password none") != 0);
    }

    void theNthCommandFails_data()
    {
        QTest::addColumn<int>("n");
        QTest::addColumn<bool>("lasting");
        QTest::addColumn<QString>("results");
        QTest::newRow("first") << 1 << false << "-+++";
        QTest::newRow("second") << 2 << false << "+-++";
        QTest::newRow("all from the second") << 2 << true << "+---";
        QTest::newRow("later") << 5 << true << "++++";
    }

    void theNthCommandFails()
    {
        QFETCH(const int, n);
        QFETCH(const bool, lasting);
        QFETCH(const QString, results);
        ScriptedChannel channel;
        channel.sendCommand("before"); // counting starts now
        channel.failNth(n, lasting);
        QString actual;
        for (int i = 0; i < 4; ++i) {
            actual += channel.sendCommand("command") == 0 ? '+' : '-';
        }
        QCOMPARE(actual, results);
    }

    void onlyCommandsAreCounted()
    {
        ScriptedChannel channel;
        channel.failNth(1);
        QCOMPARE(channel.setTimeout(0, 1000, 0), 0);
        QCOMPARE(channel.postMessage("standard", "VELTRA4", 1, "text"), 0);
        QVERIFY(channel.sendCommand("command") != 0);
        QCOMPARE(channel.commandCount(), 1);
    }

    void anActionRunsBeforeTheAnswer()
    {
        ScriptedChannel channel;
        QStringList traceSoFar;
        channel.whenSent("system hostname", [&channel, &traceSoFar] {
            traceSoFar = channel.trace();
            channel.answer("system hostname", "made up just now");
        });
        QCOMPARE(ask(&channel, "system hostname"), "made up just now");
        QCOMPARE(traceSoFar, QStringList("queryString system hostname"));
    }

    void anActionRunsWhileAMessageIsPosted()
    {
        ScriptedChannel channel;
        int calls = 0;
        channel.whenPosted("hello", [&calls] { ++calls; });
        channel.postMessage("standard", "VELTRA4", 1, "something else");
        QCOMPARE(calls, 0);
        channel.postMessage("standard", "VELTRA4", 1, "hello");
        QCOMPARE(calls, 1);
    }

    void receiversAreKnownByThemselves()
    {
        ScriptedChannel channel;
        IdleReceiver first;
        IdleReceiver second;
        channel.addMessageReceiver("name", &first);
        channel.addMessageReceiver("name", &second);
        channel.removeMessageReceiver("another name", &first);
        const QList<QPair<QByteArray, MessageReceiver *>> left{{"name", &second}};
        QCOMPARE(channel.receivers(), left);
    }

    void aListOfConfigurationsIsAnswered()
    {
        ScriptedChannel channel;
        channel.answerConfigurations({"standard", "hall"}, "hall");
        int count = 0;
        channel.queryInt(&count, "config number_of_configs");
        QCOMPARE(count, 2);
        QCOMPARE(ask(&channel, "config active_config"), "hall");
        QCOMPARE(ask(&channel, "config config t01"), "standard");
        QCOMPARE(ask(&channel, "config config t02"), "hall");
        QCOMPARE(ask(&channel, "config config t03"), "failed");
        QCOMPARE(ask(&channel, "config owner_of_config hall"), "\"owner of hall\"");
        QCOMPARE(ask(&channel, "config desc_of_config hall"), "\"description of hall\"");
        QCOMPARE(ask(&channel, "config config_has_password hall"), "no");
    }
};

VELTRA4_TEST(TestScriptedChannel)
#include "tst_scriptedchannel.moc"
