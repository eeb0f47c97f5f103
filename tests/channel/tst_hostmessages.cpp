#include "channel/hostmessages.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QtTest>

class TestHostMessages : public QObject
{
    Q_OBJECT

private slots:
    void anErrorGoesToTheStandardMessages();
    void anErrorIsSentAsLatin1();
    void onlyFailuresAreReported();
    void theEventIsGlobal();
};

void TestHostMessages::anErrorGoesToTheStandardMessages()
{
    ScriptedChannel channel;
    HostMessages::reportError(&channel, "Unable to delete configuration");
    QCOMPARE(channel.trace(),
             QStringList("postMessage standard VELTRA4 1 Unable to delete configuration"));
}

void TestHostMessages::anErrorIsSentAsLatin1()
{
    ScriptedChannel channel;
    HostMessages::reportError(&channel, QString::fromUtf8("K\u00fcche \u20ac"));
    QCOMPARE(channel.trace(),
             QStringList(QString::fromUtf8("postMessage standard VELTRA4 1 K\u00fcche ?")));
}

void TestHostMessages::onlyFailuresAreReported()
{
    ScriptedChannel channel;
    QVERIFY(HostMessages::succeededOrReported(0, &channel, "not this"));
    QVERIFY(!HostMessages::succeededOrReported(1, &channel, "above"));
    QVERIFY(!HostMessages::succeededOrReported(-1, &channel, "below"));
    QCOMPARE(channel.trace(),
             QStringList(
                 {"postMessage standard VELTRA4 1 above", "postMessage standard VELTRA4 1 below"}));
}

void TestHostMessages::theEventIsGlobal()
{
    ScriptedChannel channel;
    HostMessages::announceActiveConfigurationChanged(&channel);
    QCOMPARE(channel.trace(),
             QStringList("postMessage GlobalEvent ConfigurationModule 1 "
                         "ActiveConfigurationChanged"));
}

VELTRA4_TEST_MAIN(TestHostMessages)
#include "tst_hostmessages.moc"
