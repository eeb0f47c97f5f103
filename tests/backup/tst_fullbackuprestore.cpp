#include "backup/fullbackup.h"
#include "channel/transferencoding.h"
#include "tests/backup/procedure.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QTest>

Q_DECLARE_METATYPE(BackendVersions)

namespace {

using Procedure::Failure;

QString lost(const QString &slave)
{
    return ScriptedChannel::reported(QStringLiteral("unable to reconnect slave '%1'").arg(slave));
}

// Two chunks.
QByteArray data()
{
    return QByteArray(100, 'x') + "the rest";
}

QString chunk(int number)
{
    const QByteArray bytes = data().mid((number - 1) * 100, 100);
    return QStringLiteral("sendCommand system upload 2 %1 ").arg(number)
        + TransferEncoding::encode(bytes);
}

constexpr char uploadCancelled[] = "sendCommand system upload cancel";
constexpr char activated[] = "sendCommand config active_config config20240305140709123";
constexpr char countedSlaves[] = "queryInt cascade number_of_connected_slaves";
constexpr char removed[] = "sendCommandReply veltra2 cascade sub_slave slave-x";
constexpr char added[] = "sendCommandReply veltra2 cascade add_slave slave-a";
constexpr char found[] = "sendCommandReply veltra2 cascade add_scanned_slave slave-a";
constexpr char checkedA[] = "queryBool cascade connected_slave_available slave-a";
constexpr char checkedB[] = "queryBool cascade connected_slave_available slave-b";

constexpr char embeddedTimeout[] = "setTimeout 0 3000 1";
constexpr char cascadeTimeout[] = "setTimeout 0 8000 1";
constexpr char availabilityTimeout[] = "setTimeout 0 1000 1";
constexpr char importTimeout[] = "setTimeout 0 6000 0";

// A restore with the network settings in which nothing fails.
Procedure::Steps restoreSteps()
{
    return {
        {embeddedTimeout},
        {"queryBool system controller_embedded", Failure::Throws},
        {"sendCommand system hostname tracker-7", Failure::Stops},
        {"sendCommand system net 192.168.0.7/24 gw 192.168.0.1", Failure::Stops},
        {"sendCommand system domainname example.com", Failure::Stops},
        {"sendCommand system nameserver 192.168.0.2", Failure::Stops},
        {"sendCommand system ntp_server 192.168.0.3", Failure::Stops},
        {"queryInt config number_of_configs", Failure::Stops},
        {"queryString config config t01", Failure::Stops},
        {"queryString config config t02", Failure::Stops},
        {uploadCancelled},
        {chunk(1), Failure::DoesNotMatter, 1},
        {chunk(2)},
        {"queryString system import available", Failure::Stops},
        {"queryString system import item i01", Failure::Special},
        {"queryString system import item i02", Failure::Special},
        {"queryString system import item i03", Failure::Special},
        {importTimeout},
        {"sendCommand system import 'config' '__base'", Failure::Stops},
        {"setTimeout 0 6000 1"},
        {"sendCommandReply veltra2 config delete_config standard", Failure::Stops},
        {importTimeout},
        {"sendCommand system import 'config' 'standard'", Failure::Stops},
        {importTimeout},
        {"sendCommand system import 'config' 'config20240305140709123'", Failure::Stops},
        {activated},
        {ScriptedChannel::announced()},
        {countedSlaves, Failure::Stops},
        {"queryString cascade connected_slave d01", Failure::Stops},
        {"queryString cascade connected_slave d02", Failure::Stops},
        {cascadeTimeout},
        {removed, Failure::Stops},
        {cascadeTimeout},
        {added, Failure::Stops},
        {availabilityTimeout},
        {checkedA, Failure::DoesNotMatter, 0, lost("slave-a")},
        {availabilityTimeout},
        {checkedB, Failure::DoesNotMatter, 0, lost("slave-b")},
    };
}

// A controller with one configuration of the backup and one of its own, one slave of the backup
// and one of its own.
void scriptRestore(ScriptedChannel *channel)
{
    channel->answer("system controller_embedded", "yes");
    channel->answerConfigurations({"standard", "other"}, "other");
    channel->answer("system import available", "3 config");
    channel->answer("system import item i01", "standard 'owner' 'a description'");
    channel->answer("system import item i02", "__base '' ''");
    channel->answer("system import item i03", "config20240305140709123 'o' 'd'");
    channel->answer("cascade number_of_connected_slaves", "2");
    channel->answer("cascade connected_slave d01", "slave-b");
    channel->answer("cascade connected_slave d02", "slave-x");
    channel->answer("cascade connected_slave_available slave-a", "yes");
    channel->answer("cascade connected_slave_available slave-b", "yes");
}

} // namespace

class TestFullBackupRestore : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_versions = SampleBackup::versions();
        m_channel.reset(new ScriptedChannel);
        scriptRestore(m_channel.data());
        m_backup.reset(new FullBackup(m_channel.data(), &m_versions));
        SampleBackup::fill(m_backup.data());
        m_backup->configData = data();
    }

    void restoresEverything()
    {
        QStringList failed;
        QStringList reconnected;
        QVERIFY(m_backup->restoreToController(true, &failed, &reconnected));
        QCOMPARE(m_channel->trace(), traceOf(restoreSteps()));
        QCOMPARE(failed, QStringList());
        QCOMPARE(reconnected, QStringList({"slave-a", "slave-b"}));
    }

    void everyCommandMayFail_data() { addFaultRows(restoreSteps()); }

    void everyCommandMayFail()
    {
        QFETCH(const int, n);
        QFETCH(const bool, lasting);
        const Procedure::Outcome expected = expectedOutcome(restoreSteps(), n, lasting);
        m_channel->failNth(n, lasting);
        bool result = false;
        QStringList failed;
        const auto restore = [&] { result = m_backup->restoreToController(true, &failed); };
        QCOMPARE(Procedure::thrownBy(restore), expected.thrown);
        QCOMPARE(m_channel->trace(), expected.trace);
        QCOMPARE(result, expected.isComplete);
        for (const char *slave : {"slave-a", "slave-b"}) {
            QCOMPARE(failed.count(slave), expected.trace.count(lost(slave)));
        }
    }

    void leavesTheAddressAloneWhenToldTo()
    {
        QVERIFY(m_backup->restoreToController(false));
        Procedure::Steps expected = restoreSteps();
        expected.erase(expected.begin() + 2, expected.begin() + 4);
        QCOMPARE(m_channel->trace(), traceOf(expected));
    }

    void setsNoNetworkOfAControllerThatIsNotEmbedded()
    {
        m_channel->answer("system controller_embedded", "no");
        QVERIFY(m_backup->restoreToController(true));
        Procedure::Steps expected = restoreSteps();
        expected.erase(expected.begin() + 2, expected.begin() + 7);
        QCOMPARE(m_channel->trace(), traceOf(expected));
    }

    void stopsWhenADeletionOrARemovalIsRefused()
    {
        m_channel->answer("veltra2 cascade sub_slave slave-x", "veltra2 error");
        QVERIFY(!m_backup->restoreToController(true));
        QCOMPARE(m_channel->trace().last(), removed);
        m_channel->answer("veltra2 config delete_config standard", "veltra2 error");
        QVERIFY(!m_backup->restoreToController(true));
        QCOMPARE(m_channel->trace().last(),
                 "sendCommandReply veltra2 config delete_config standard");
    }

    void leavesTheActiveConfigurationAloneWhenItIsNotImported()
    {
        m_backup->activeConfig = "other";
        QVERIFY(m_backup->restoreToController(true));
        QStringList expected = traceOf(restoreSteps());
        QVERIFY(expected.removeOne(activated));
        QCOMPARE(m_channel->trace(), expected);
    }

    void uploadsInChunks_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<QList<int>>("lengths");
        QTest::newRow("nothing") << 0 << QList<int>();
        QTest::newRow("1") << 1 << QList<int>{2};
        QTest::newRow("100") << 100 << QList<int>{134};
        QTest::newRow("101") << 101 << QList<int>{134, 2};
        QTest::newRow("250") << 250 << QList<int>{134, 134, 67};
    }

    void uploadsInChunks()
    {
        QFETCH(const int, size);
        QFETCH(const QList<int>, lengths);
        m_backup->configData.clear();
        for (int i = 0; i < size; ++i) {
            m_backup->configData += static_cast<char>(i);
        }
        QCOMPARE(m_backup->uploadConfigData(), 0);

        const QStringList trace = m_channel->trace();
        QCOMPARE(trace.size(), lengths.size() + 1);
        QCOMPARE(trace.first(), uploadCancelled);
        QByteArray received;
        for (int i = 0; i < lengths.size(); ++i) {
            const QString beginning =
                QStringLiteral("sendCommand system upload %1 %2 ").arg(lengths.size()).arg(i + 1);
            QVERIFY(trace.at(i + 1).startsWith(beginning));
            const QByteArray text = trace.at(i + 1).mid(beginning.size()).toLatin1();
            QCOMPARE(text.size(), lengths.at(i));
            QVERIFY(TransferEncoding::decode(text, &received) >= 0);
        }
        QCOMPARE(received, m_backup->configData);
    }

    void neverReportsAFailedUpload()
    {
        m_channel->failNth(1, true);
        QCOMPARE(m_backup->uploadConfigData(), 0);
        QCOMPARE(m_channel->trace(), QStringList({uploadCancelled, chunk(1)}));
    }

    void readsTheImportItemsInOrder()
    {
        m_channel->answer("system import available", "4 config");
        m_channel->answer("system import item i01", "b 'the owner' ''");
        m_channel->answer("system import item i02", "\xc3\xa4 '' ''");
        m_channel->answer("system import item i03", "__base2 '' ''");
        m_channel->answer("system import item i04", "__BASE '' ''");
        QStringList items{"before"};
        QVERIFY(m_backup->readImportItems(&items));
        QCOMPARE(items, QStringList({"b", QStringLiteral(u"\u00e4"), "__base2", "__BASE"}));
    }

    void findsIdentifiersBeyondAsciiAgain()
    {
        m_channel->answer("config config t02", "b\xc3\xa4");
        m_channel->answer("system import item i03", "b\xc3\xa4 '' ''");
        QVERIFY(m_backup->restoreToController(true));
        QVERIFY(m_channel->trace().contains(
            QStringLiteral(u"sendCommandReply veltra2 config delete_config b\u00e4")));
    }

    void leavesTheListAloneWhenNothingIsOffered()
    {
        for (const char *answer : {"", "3 rooms", "2147483647 config"}) {
            m_channel->answer("system import available", answer);
            QStringList items{"before"};
            QVERIFY2(!m_backup->readImportItems(&items), answer);
            QCOMPARE(items, QStringList("before"));
        }
    }

    void importsTheBaseFirstOrNotAtAll()
    {
        QStringList items;
        m_versions.interfaceVersion = {1, 17, -1};
        QVERIFY(m_backup->readImportItems(&items));
        QCOMPARE(items, QStringList({"__base", "standard", "config20240305140709123"}));
        m_versions.interfaceVersion = {1, 16, 9};
        QVERIFY(m_backup->readImportItems(&items));
        QCOMPARE(items, QStringList({"standard", "config20240305140709123"}));
    }

    void anItemThatIsNotDescribedIsTakenForTheOneBefore()
    {
        m_channel->fail("system import item i02");
        QStringList items;
        QVERIFY(m_backup->readImportItems(&items));
        QCOMPARE(items, QStringList({"standard", "standard", "config20240305140709123"}));
    }

    // Neither the second answer nor the third is looked at.
    void looksForASlaveThatIsRefused()
    {
        m_channel->answer("veltra2 cascade add_slave slave-a", "veltra2 error: no such slave");
        m_channel->answer("veltra2 cascade add_scanned_slave slave-a", "veltra2 error");
        QStringList failed;
        QVERIFY(m_backup->restoreToController(true, &failed));
        QStringList expected = traceOf(restoreSteps());
        const int position = expected.indexOf(added) + 1;
        const QStringList more{cascadeTimeout, found, cascadeTimeout, added};
        expected = expected.mid(0, position) + more + expected.mid(position);
        QCOMPARE(m_channel->trace(), expected);
        QCOMPARE(failed, QStringList());
    }

    void stopsWhenASlaveThatWasRefusedCannotBeAdded()
    {
        m_channel->answer("veltra2 cascade add_slave slave-a", "veltra2 error");
        m_channel->whenSent("veltra2 cascade add_scanned_slave slave-a",
                            [this] { m_channel->fail("veltra2 cascade add_slave slave-a"); });
        QVERIFY(!m_backup->restoreToController(true));
        QCOMPARE(m_channel->trace().mid(m_channel->trace().size() - 3),
                 QStringList({found, cascadeTimeout, added}));
        m_channel->succeed("veltra2 cascade add_slave slave-a");
        m_channel->fail("veltra2 cascade add_scanned_slave slave-a");
        QVERIFY(!m_backup->restoreToController(true));
        QCOMPARE(m_channel->trace().last(), found);
    }

    void checksSlavesThatAreConnectedAlready()
    {
        m_channel->answer("cascade connected_slave d02", "slave-a");
        QStringList reconnected;
        QVERIFY(m_backup->restoreToController(true, nullptr, &reconnected));
        QCOMPARE(cascadeTrace().mid(3),
                 QStringList({availabilityTimeout, checkedA, availabilityTimeout, checkedB}));
        QCOMPARE(reconnected, m_backup->slaves);
    }

    void appendsToTheListsOfSlaves()
    {
        m_channel->answer("cascade connected_slave_available slave-a", "no");
        QStringList failed{"before"};
        QStringList reconnected{"before"};
        QVERIFY(m_backup->restoreToController(true, &failed, &reconnected));
        QCOMPARE(failed, QStringList({"before", "slave-a"}));
        QCOMPARE(reconnected, QStringList({"before", "slave-b"}));
    }

    void reportsASlaveThatIsMissing()
    {
        m_channel->answer("cascade connected_slave_available slave-a", "no");
        QVERIFY(m_backup->restoreToController(true));
        QStringList expected = traceOf(restoreSteps());
        expected.insert(expected.size() - 2, lost("slave-a"));
        QCOMPARE(m_channel->trace(), expected);
    }

    void removesAllSlavesThatTheBackupDoesNotKnow()
    {
        m_backup->slaves.clear();
        QVERIFY(m_backup->restoreToController(true));
        QCOMPARE(
            cascadeTrace().mid(3),
            QStringList({cascadeTimeout, "sendCommandReply veltra2 cascade sub_slave slave-b",
                         cascadeTimeout, "sendCommandReply veltra2 cascade sub_slave slave-x"}));
    }

    void isCompatibleWithTheSameOrANewerController_data()
    {
        QTest::addColumn<bool>("isEmbedded");
        QTest::addColumn<BackendVersions>("controller");
        QTest::addColumn<bool>("isCompatible");
        // The backup: 4.2.1, firmware 3.5, "Model 5".
        const auto row = [](const char *name, bool isCompatible, const Version &pt,
                            const Version &ct, const char *model = "Model 5",
                            bool isEmbedded = true) {
            QTest::newRow(name) << isEmbedded << BackendVersions{pt, {1, 27, 0}, ct, model}
                                << isCompatible;
        };
        row("the same", true, {4, 2, 1}, {3, 5, -1});
        row("newer", true, {5, 0, 0}, {4, -1, -1});
        row("older software", false, {4, 2, 0}, {3, 5, -1});
        row("unknown software", false, {-1, -1, -1}, {3, 5, -1});
        row("older firmware", false, {4, 2, 1}, {3, 4, 9});
        row("unknown firmware", false, {4, 2, 1}, {-1, -1, -1});
        row("older firmware that does not count", true, {4, 2, 1}, {3, 4, 9}, "Model 5", false);
        row("older software, not embedded", false, {4, 1, 9}, {3, 5, -1}, "Model 5", false);
        row("another model", false, {4, 2, 1}, {3, 5, -1}, "model 5");
        row("no model", false, {4, 2, 1}, {3, 5, -1}, "", false);
    }

    void isCompatibleWithTheSameOrANewerController()
    {
        QFETCH(const bool, isEmbedded);
        QFETCH(const bool, isCompatible);
        QFETCH(const BackendVersions, controller);
        m_versions = controller;
        m_channel->answer("system controller_embedded", isEmbedded ? "yes" : "no");
        QCOMPARE(m_backup->isCompatibleWithController(), isCompatible);
        bool embedded = !isEmbedded;
        QCOMPARE(m_backup->isCompatibleWithController(&embedded), isCompatible);
        QCOMPARE(embedded, isEmbedded);
    }

    void asksWhetherTheControllerIsEmbeddedForTheCallerAndForTheVersions()
    {
        bool embedded = false;
        const QStringList asked{embeddedTimeout, "queryBool system controller_embedded"};
        QVERIFY(m_backup->isCompatibleWithController(&embedded));
        QCOMPARE(m_channel->takeTrace(), asked + asked);
        QVERIFY(m_backup->isCompatibleWithController());
        QCOMPARE(m_channel->takeTrace(), asked);
    }

    void losingTheConnectionThrows()
    {
        bool embedded = false;
        m_channel->fail("system controller_embedded");
        QVERIFY_EXCEPTION_THROWN(m_backup->isCompatibleWithController(), std::runtime_error);
        QVERIFY_EXCEPTION_THROWN(m_backup->isCompatibleWithController(&embedded),
                                 std::runtime_error);
    }

    void cancelsTheUpload()
    {
        QVERIFY(m_backup->cancelUpload());
        m_channel->fail("system upload cancel");
        QVERIFY(!m_backup->cancelUpload());
        QCOMPARE(m_channel->trace(), QStringList({uploadCancelled, uploadCancelled}));
    }

private:
    // The part of the trace that concerns slaves and the cascade.
    QStringList cascadeTrace() const
    {
        return m_channel->trace().mid(m_channel->trace().indexOf(countedSlaves));
    }

    QScopedPointer<ScriptedChannel> m_channel;
    BackendVersions m_versions;
    QScopedPointer<FullBackup> m_backup;
};

VELTRA4_TEST(TestFullBackupRestore)
#include "tst_fullbackuprestore.moc"
