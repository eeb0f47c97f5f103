#include "channel/guardedchannel.h"
#include "channel/replybuffer.h"
#include "channel/survives.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <cwchar>
#include <functional>
#include <memory>

using Call = std::function<int(IOManager *channel)>;
Q_DECLARE_METATYPE(Call)

class TestGuardedChannel : public QObject
{
    Q_OBJECT

private slots:
    void callsAreHandedOn_data();
    void callsAreHandedOn();
    void answersArrive();
    void bytesPassAsTheyAre();
    void aBrokenCommandIsAnEmptyLine();
    void theCallThatCostsTheOwnerTheLifeThrows_data();
    void theCallThatCostsTheOwnerTheLifeThrows();
    void theChannelMayDieWithItsOwner();
    void receiversComeAndGoWithoutAnOwner();
};

namespace {

// The commands are not literals where they are sent: each has to tell its own format.
void addCalls()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QString>("line");
    const auto add = [](const char *line, const Call &call) {
        QTest::newRow(line) << call << QString::fromLatin1(line);
    };
    add("setTimeout 0 20000 1",
        [](IOManager *channel) { return channel->setTimeout(0, 20000, 1); });
    add("sendCommandReply veltra2 config clone_config a b", [](IOManager *channel) {
        ReplyBuffer reply;
        return channel->sendCommandReply(reply.data(), "veltra2 config clone_config %s %s", "a",
                                         "b");
    });
    add("queryString config config t07", [](IOManager *channel) {
        ReplyBuffer reply;
        return channel->queryString(reply.data(), "config config t%02d", 7);
    });
    add("queryInt config number_of_configs", [](IOManager *channel) {
        int value = 0;
        return channel->queryInt(&value, "config number_of_configs");
    });
    add("queryDouble config free_space", [](IOManager *channel) {
        double value = 0;
        return channel->queryDouble(&value, "config free_space");
    });
    add("queryBool cascade connected_slave_available x", [](IOManager *channel) {
        bool value = false;
        return channel->queryBool(&value, "cascade connected_slave_available %s", "x");
    });
    add("sendCommand system upload 3 1 AAAA", [](IOManager *channel) {
        return channel->sendCommand("system upload %d %d %s", 3, 1, "AAAA");
    });
    add("postMessage standard VELTRA4 1 text",
        [](IOManager *channel) { return channel->postMessage("standard", "VELTRA4", 1, "text"); });
}

} // namespace

void TestGuardedChannel::callsAreHandedOn_data()
{
    addCalls();
}

void TestGuardedChannel::callsAreHandedOn()
{
    QFETCH(const Call, call);
    QFETCH(const QString, line);
    ScriptedChannel host;
    GuardedChannel channel(&host, this);
    const int result = call(&channel);
    QCOMPARE(host.trace(), QStringList(line));
    QCOMPARE(result, call(&host)); // queries without an answer fail
    QCOMPARE(channel.host(), static_cast<IOManager *>(&host));
}

void TestGuardedChannel::answersArrive()
{
    ScriptedChannel host;
    host.answer("veltra2 config delete_config a", "veltra2 ok");
    host.answer("config active_config", "alpha");
    host.answer("config number_of_configs", "3");
    host.answer("config free_space", "0.25");
    host.answer("system controller_embedded", "yes");
    GuardedChannel channel(&host, this);
    ReplyBuffer reply;
    QCOMPARE(channel.sendCommandReply(reply.data(), "veltra2 config delete_config %s", "a"), 0);
    QCOMPARE(reply.text(), QString("veltra2 ok"));
    QCOMPARE(channel.queryString(reply.data(), "config active_config"), 0);
    QCOMPARE(reply.text(), QString("alpha"));
    int number = 0;
    QCOMPARE(channel.queryInt(&number, "config number_of_configs"), 0);
    QCOMPARE(number, 3);
    double fraction = 0;
    QCOMPARE(channel.queryDouble(&fraction, "config free_space"), 0);
    QCOMPARE(fraction, 0.25);
    bool truth = false;
    QCOMPARE(channel.queryBool(&truth, "system controller_embedded"), 0);
    QVERIFY(truth);
}

void TestGuardedChannel::bytesPassAsTheyAre()
{
    ScriptedChannel host;
    GuardedChannel channel(&host, this);
    const QByteArray text = "100 %s \xE4\xF6 " + QByteArray(300, 'x');
    channel.sendCommand("config desc \"%s\"", text.constData());
    QCOMPARE(host.trace(),
             QStringList(QString::fromLatin1("sendCommand config desc \"" + text + '"')));
}

void TestGuardedChannel::aBrokenCommandIsAnEmptyLine()
{
    ScriptedChannel host;
    GuardedChannel channel(&host, this);
    channel.sendCommand("config desc \"%lc\"", wint_t{0xD800}); // half a character
    QCOMPARE(host.trace(), QStringList("sendCommand "));
}

void TestGuardedChannel::theCallThatCostsTheOwnerTheLifeThrows_data()
{
    addCalls();
}

void TestGuardedChannel::theCallThatCostsTheOwnerTheLifeThrows()
{
    QFETCH(const Call, call);
    QFETCH(const QString, line);
    ScriptedChannel host;
    auto owner = std::make_unique<QObject>();
    GuardedChannel channel(&host, owner.get());
    call(&channel);
    owner.reset();
    host.takeTrace();
    QVERIFY_EXCEPTION_THROWN(call(&channel), OwnerDestroyed);
    QCOMPARE(host.trace(), QStringList(line));
}

void TestGuardedChannel::theChannelMayDieWithItsOwner()
{
    struct Owner : QObject
    {
        explicit Owner(IOManager *host)
            : channel(host, this)
        {
        }
        GuardedChannel channel;
    };
    ScriptedChannel host;
    auto *owner = new Owner(&host);
    host.whenSent("config new_password none", [owner] { delete owner; });
    bool isReached = false;
    QVERIFY(!survives(owner, [&] {
        owner->channel.sendCommand("config new_password none");
        isReached = true;
    }));
    QVERIFY(!isReached);
}

void TestGuardedChannel::receiversComeAndGoWithoutAnOwner()
{
    ScriptedChannel host;
    auto owner = std::make_unique<QObject>();
    GuardedChannel channel(&host, owner.get());
    owner.reset();
    channel.addMessageReceiver("a", nullptr);
    channel.removeMessageReceiver("b", nullptr);
    QCOMPARE(host.trace().size(), 2);
}

VELTRA4_TEST_MAIN(TestGuardedChannel)
#include "tst_guardedchannel.moc"
