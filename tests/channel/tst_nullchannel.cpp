#include "channel/nullchannel.h"
#include "hostapi/backendversions.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QtTest>

class TestNullChannel : public QObject
{
    Q_OBJECT

private slots:
    void everyOperationFails();
    void answersAreLeftAlone();
    void itStandsInForNoChannelOnly();
    void aMissingRecordIsReplacedByAnEmptyOne();
};

void TestNullChannel::everyOperationFails()
{
    NullChannel channel;
    char reply[200] = "";
    int number = 0;
    double fraction = 0;
    bool truth = false;
    QVERIFY(channel.setTimeout(0, 20000, 1) != 0);
    QVERIFY(channel.sendCommandReply(reply, "veltra2 config new_config %s", "hall") != 0);
    QVERIFY(channel.queryString(reply, "config active_config") != 0);
    QVERIFY(channel.queryInt(&number, "config number_of_configs") != 0);
    QVERIFY(channel.queryDouble(&fraction, "config free_space") != 0);
    QVERIFY(channel.queryBool(&truth, "system controller_embedded") != 0);
    QVERIFY(channel.sendCommand("config new_password none") != 0);
    QVERIFY(channel.postMessage("standard", "VELTRA4", 1, "text") != 0);
    QVERIFY(channel.addMessageReceiver("name", nullptr) != 0);
    QVERIFY(channel.removeMessageReceiver("name", nullptr) != 0);
}

void TestNullChannel::answersAreLeftAlone()
{
    NullChannel channel;
    char reply[200] = "before";
    int number = 7;
    double fraction = 0.5;
    bool truth = true;
    channel.sendCommandReply(reply, "veltra2 config new_config %s", "hall");
    channel.queryString(reply, "config active_config");
    channel.queryInt(&number, "config number_of_configs");
    channel.queryDouble(&fraction, "config free_space");
    channel.queryBool(&truth, "system controller_embedded");
    QCOMPARE(reply, "before");
    QCOMPARE(number, 7);
    QCOMPARE(fraction, 0.5);
    QCOMPARE(truth, true);
}

void TestNullChannel::itStandsInForNoChannelOnly()
{
    ScriptedChannel real;
    QCOMPARE(NullChannel::orNull(&real), static_cast<IOManager *>(&real));
    IOManager *substitute = NullChannel::orNull(nullptr);
    QVERIFY(substitute);
    QVERIFY(substitute->sendCommand("config new_password none") != 0);
}

void TestNullChannel::aMissingRecordIsReplacedByAnEmptyOne()
{
    BackendVersions real;
    QCOMPARE(orNotGiven(&real), &real);
    const BackendVersions *substitute = orNotGiven(nullptr);
    QVERIFY(substitute);
    QCOMPARE(substitute->interfaceVersion.major, -1);
    QCOMPARE(substitute->systemModel, QString());
}

VELTRA4_TEST_MAIN(TestNullChannel)
#include "tst_nullchannel.moc"
