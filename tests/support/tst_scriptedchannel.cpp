#include "hostapi/messagereceiver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QTest>

namespace {

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
    void init() { m_channel = std::make_unique<ScriptedChannel>(); }

    void everyCallIsTraced()
    {
        char reply[200] = "";
        int number = 0;
        double fraction = 0;
        bool truth = false;
        IdleReceiver receiver;
        m_channel->setTimeout(0, 20000, 1);
        m_channel->sendCommandReply(reply, "veltra2 config clone_config config%s %s", "1", "two");
        m_channel->queryString(reply, "config config t%02d", 7);
        m_channel->queryInt(&number, "config number_of_configs");
        m_channel->queryDouble(&fraction, "config free_space");
        m_channel->queryBool(&truth, "system controller_embedded");
        m_channel->sendCommand("config owner \"%s\" ", "B\xfcro");
        m_channel->postMessage("standard", "VELTRA4", 1, "some text");
        m_channel->addMessageReceiver("ConfigurationsModule", &receiver);
        m_channel->removeMessageReceiver("ServiceModule", &receiver);
        QCOMPARE(
            m_channel->trace(),
            QStringList(
                {"setTimeout 0 20000 1", "sendCommandReply veltra2 config clone_config config1 two",
                 "queryString config config t07", "queryInt config number_of_configs",
                 "queryDouble config free_space", "queryBool system controller_embedded",
                 QString::fromUtf8("sendCommand config owner \"B\u00fcro\" "),
                 ScriptedChannel::reported("some text"), "addMessageReceiver ConfigurationsModule",
                 "removeMessageReceiver ServiceModule"}));
    }

    void aTakenTraceStartsAgain()
    {
        m_channel->sendCommand("first");
        QCOMPARE(m_channel->takeTrace(), QStringList("sendCommand first"));
        m_channel->sendCommand("second");
        QCOMPARE(m_channel->trace(), QStringList("sendCommand second"));
        QCOMPARE(m_channel->commandCount(), 2);
    }

    void answersComeInTurnAndTheLastOneStays()
    {
        m_channel->answerInTurn("config is_changeable", {"no", "yes"});
        QCOMPARE(ask("config is_changeable"), "no");
        QCOMPARE(ask("config is_changeable"), "yes");
        QCOMPARE(ask("config is_changeable"), "yes");
        m_channel->answer("config is_changeable", "no");
        QCOMPARE(ask("config is_changeable"), "no");
        QCOMPARE(ask("config is_changeable"), "no");
    }

    void withoutAScriptQueriesFailAndCommandsSucceed()
    {
        char reply[200] = "untouched";
        QVERIFY(m_channel->queryString(reply, "system hostname") != 0);
        QCOMPARE(reply, "untouched");
        QCOMPARE(m_channel->sendCommand("config new_password none"), 0);
        QCOMPARE(m_channel->sendCommandReply(reply, "veltra2 config new_config hall"), 0);
        QCOMPARE(reply, "veltra2 ok");
    }

    void aCommandFailsUntilItMaySucceed()
    {
        m_channel->answer("system hostname", "hall");
        m_channel->fail("system hostname");
        m_channel->fail("config new_password none");
        QCOMPARE(ask("system hostname"), "failed");
        QVERIFY(m_channel->sendCommand("config new_password none") != 0);
        m_channel->succeed("system hostname");
        QCOMPARE(ask("system hostname"), "hall");
        QVERIFY(m_channel->sendCommand("config new_password none") != 0);
    }

    void theNthCommandFails()
    {
        m_channel->sendCommand("before"); // counting starts afterwards
        QCOMPARE(resultsWhenFailing(1, false), "-+++");
        QCOMPARE(resultsWhenFailing(2, false), "+-++");
        QCOMPARE(resultsWhenFailing(2, true), "+---");
        QCOMPARE(resultsWhenFailing(5, true), "++++");
    }

    void onlyCommandsAreCounted()
    {
        m_channel->failNth(1);
        QCOMPARE(m_channel->setTimeout(0, 1000, 0), 0);
        QCOMPARE(m_channel->postMessage("standard", "VELTRA4", 1, "text"), 0);
        QVERIFY(m_channel->sendCommand("command") != 0);
        QCOMPARE(m_channel->commandCount(), 1);
    }

    void anActionRunsBeforeTheAnswer()
    {
        QStringList traceSoFar;
        m_channel->whenSent("system hostname", [&] {
            traceSoFar = m_channel->trace();
            m_channel->answer("system hostname", "made up just now");
        });
        QCOMPARE(ask("system hostname"), "made up just now");
        QCOMPARE(traceSoFar, QStringList("queryString system hostname"));
    }

    void anActionRunsWhileAMessageIsPosted()
    {
        int calls = 0;
        m_channel->whenPosted("hello", [&calls] { ++calls; });
        m_channel->postMessage("standard", "VELTRA4", 1, "something else");
        QCOMPARE(calls, 0);
        m_channel->postMessage("standard", "VELTRA4", 1, "hello");
        QCOMPARE(calls, 1);
    }

    void receiversAreKnownByThemselves()
    {
        IdleReceiver first;
        IdleReceiver second;
        m_channel->addMessageReceiver("name", &first);
        m_channel->addMessageReceiver("name", &second);
        m_channel->removeMessageReceiver("another name", &first);
        const QList<QPair<QByteArray, MessageReceiver *>> left{{"name", &second}};
        QCOMPARE(m_channel->receivers(), left);
    }

    void aListOfConfigurationsIsAnswered()
    {
        m_channel->answerConfigurations({"standard", "hall"}, "hall");
        int count = 0;
        m_channel->queryInt(&count, "config number_of_configs");
        QCOMPARE(count, 2);
        QCOMPARE(ask("config active_config"), "hall");
        QCOMPARE(ask("config config t01"), "standard");
        QCOMPARE(ask("config config t02"), "hall");
        QCOMPARE(ask("config config t03"), "failed");
        QCOMPARE(ask("config owner_of_config hall"), "\"owner of hall\"");
        QCOMPARE(ask("config desc_of_config hall"), "\"description of hall\"");
        QCOMPARE(ask("config config_has_password hall"), "no");
    }

private:
    QString ask(const char *query)
    {
        char reply[200] = "untouched";
        return m_channel->queryString(reply, "%s", query) == 0 ? QString::fromLatin1(reply)
                                                               : QString("failed");
    }

    // Of four commands.
    QString resultsWhenFailing(int n, bool lasting)
    {
        m_channel->failNth(n, lasting);
        QString results;
        for (int i = 0; i < 4; ++i) {
            results += m_channel->sendCommand("command") == 0 ? '+' : '-';
        }
        return results;
    }

    std::unique_ptr<ScriptedChannel> m_channel;
};

VELTRA4_TEST(TestScriptedChannel)
#include "tst_scriptedchannel.moc"
