#include "backup/fullbackup.h"
#include "channel/transferencoding.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <stdexcept>

Q_DECLARE_METATYPE(BackendVersions)

namespace {

// What the failure of a command means for the restore.
enum class Failure {
    Stops,
    Throws,
    EndsTheUpload, // the chunk in the next line is not sent
    LosesTheSlave,
    DoesNotMatter
};

struct Step
{
    QString line;
    Failure failure = Failure::DoesNotMatter;
    QString slave = {}; // which is lost
};

bool isCommand(const Step &step)
{
    return !step.line.startsWith(QLatin1String("setTimeout"))
        && !step.line.startsWith(QLatin1String("postMessage"));
}

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
    return QStringLiteral("sendCommand system upload 2 %1 %2")
        .arg(number)
        .arg(QString::fromLatin1(TransferEncoding::encode(bytes)));
}

const QString cascadeTimeout = QStringLiteral("setTimeout 0 8000 1");
const QString availabilityTimeout = QStringLiteral("setTimeout 0 1000 1");
const QString deleteTimeout = QStringLiteral("setTimeout 0 6000 1");
const QString importTimeout = QStringLiteral("setTimeout 0 6000 0");

Step stopping(const char *line)
{
    return {QString::fromLatin1(line), Failure::Stops};
}

// A restore with the network settings in which nothing fails.
QList<Step> steps()
{
    return {
        {QStringLiteral("setTimeout 0 3000 1")},
        {QStringLiteral("queryBool system controller_embedded"), Failure::Throws},
        stopping("sendCommand system hostname tracker-7"),
        stopping("sendCommand system net 192.168.0.7/24 gw 192.168.0.1"),
        stopping("sendCommand system domainname example.com"),
        stopping("sendCommand system nameserver 192.168.0.2"),
        stopping("sendCommand system ntp_server 192.168.0.3"),
        stopping("queryInt config number_of_configs"),
        stopping("queryString config config t01"),
        stopping("queryString config config t02"),
        {QStringLiteral("sendCommand system upload cancel")},
        {chunk(1), Failure::EndsTheUpload},
        {chunk(2)},
        stopping("queryString system import available"),
        {QStringLiteral("queryString system import item i01")},
        {QStringLiteral("queryString system import item i02")},
        {QStringLiteral("queryString system import item i03")},
        {importTimeout},
        stopping("sendCommand system import 'config' '__base'"),
        {deleteTimeout},
        stopping("sendCommandReply veltra2 config delete_config standard"),
        {importTimeout},
        stopping("sendCommand system import 'config' 'standard'"),
        {importTimeout},
        stopping("sendCommand system import 'config' 'config20240305140709123'"),
        {QStringLiteral("sendCommand config active_config config20240305140709123")},
        {ScriptedChannel::announced()},
        stopping("queryInt cascade number_of_connected_slaves"),
        stopping("queryString cascade connected_slave d01"),
        stopping("queryString cascade connected_slave d02"),
        {cascadeTimeout},
        stopping("sendCommandReply veltra2 cascade sub_slave slave-x"),
        {cascadeTimeout},
        stopping("sendCommandReply veltra2 cascade add_slave slave-a"),
        {availabilityTimeout},
        {QStringLiteral("queryBool cascade connected_slave_available slave-a"),
         Failure::LosesTheSlave, QStringLiteral("slave-a")},
        {availabilityTimeout},
        {QStringLiteral("queryBool cascade connected_slave_available slave-b"),
         Failure::LosesTheSlave, QStringLiteral("slave-b")},
    };
}

QStringList linesOf(const QList<Step> &list)
{
    QStringList lines;
    for (const Step &step : list) {
        lines << step.line;
    }
    return lines;
}

struct Outcome
{
    QStringList trace;
    bool result = true;
    bool hasThrown = false;
    QStringList failedSlaves;
};

// What has to happen when the n-th command fails, and with @p lasting all later ones.
Outcome expectedOutcome(int n, bool lasting)
{
    Outcome outcome;
    int commands = 0;
    const QList<Step> all = steps();
    for (int i = 0; i < all.size(); ++i) {
        const Step &step = all.at(i);
        outcome.trace << step.line;
        commands += isCommand(step) ? 1 : 0;
        const bool hasFailed = isCommand(step) && (commands == n || (lasting && commands > n));
        if (!hasFailed || step.failure == Failure::DoesNotMatter) {
            continue;
        }
        if (step.failure == Failure::EndsTheUpload) {
            ++i;
            commands += lasting ? 0 : 1; // the command that is not sent
        } else if (step.failure == Failure::LosesTheSlave) {
            outcome.trace << lost(step.slave);
            outcome.failedSlaves << step.slave;
        } else {
            outcome.result = false;
            outcome.hasThrown = step.failure == Failure::Throws;
            return outcome;
        }
    }
    return outcome;
}

// A controller with one configuration of the backup and one of its own, one slave of the backup
// and one of its own.
void script(ScriptedChannel *channel)
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
        script(m_channel.data());
        m_backup.reset(new FullBackup(m_channel.data(), &m_versions));
        SampleBackup::fill(m_backup.data());
        m_backup->configData = data();
    }

    void restoresEverything()
    {
        QStringList failed;
        QStringList reconnected;
        QVERIFY(m_backup->restoreToController(true, &failed, &reconnected));
        QCOMPARE(m_channel->trace(), linesOf(steps()));
        QCOMPARE(failed, QStringList());
        QCOMPARE(reconnected, QStringList({QStringLiteral("slave-a"), QStringLiteral("slave-b")}));
    }

    void everyCommandMayFail_data()
    {
        QTest::addColumn<int>("n");
        QTest::addColumn<bool>("lasting");
        int n = 0;
        for (const Step &step : steps()) {
            if (isCommand(step)) {
                ++n;
                if (!step.line.contains(QLatin1String("import item"))) { // has a test of its own
                    QTest::addRow("%s", qPrintable(step.line)) << n << false;
                    QTest::addRow("%s and all later ones", qPrintable(step.line)) << n << true;
                }
            }
        }
    }

    void everyCommandMayFail()
    {
        QFETCH(const int, n);
        QFETCH(const bool, lasting);
        const Outcome expected = expectedOutcome(n, lasting);
        m_channel->failNth(n, lasting);
        bool result = false;
        QByteArray thrown;
        QStringList failed;
        try {
            result = m_backup->restoreToController(true, &failed);
        } catch (const std::runtime_error &error) {
            thrown = error.what();
        }
        QCOMPARE(m_channel->trace(), expected.trace);
        QCOMPARE(result, expected.result);
        QCOMPARE(thrown, QByteArray(expected.hasThrown ? "connection error" : ""));
        QCOMPARE(failed, expected.failedSlaves);
    }

    void leavesTheAddressAloneWhenToldTo()
    {
        QVERIFY(m_backup->restoreToController(false));
        QStringList expected = linesOf(steps());
        QCOMPARE(expected.removeAll(QStringLiteral("sendCommand system hostname tracker-7")), 1);
        QCOMPARE(expected.removeAll(
                     QStringLiteral("sendCommand system net 192.168.0.7/24 gw 192.168.0.1")),
                 1);
        QCOMPARE(m_channel->trace(), expected);
    }

    void setsNoNetworkOfAControllerThatIsNotEmbedded_data()
    {
        QTest::addColumn<bool>("restoreNetwork");
        QTest::newRow("told to") << true;
        QTest::newRow("not told to") << false;
    }

    void setsNoNetworkOfAControllerThatIsNotEmbedded()
    {
        QFETCH(const bool, restoreNetwork);
        m_channel->answer("system controller_embedded", "no");
        QVERIFY(m_backup->restoreToController(restoreNetwork));
        QList<Step> expected = steps();
        expected.erase(expected.begin() + 2, expected.begin() + 7);
        QCOMPARE(m_channel->trace(), linesOf(expected));
    }

    void anOldControllerIsNotAskedWhetherItIsEmbedded()
    {
        m_versions.ptVersion = {3, 0, 0};
        QVERIFY(m_backup->restoreToController(true));
        QCOMPARE(m_channel->trace(), linesOf(steps().mid(2)));
    }

    void sendsTextsAsLatin1()
    {
        m_backup->name = QStringLiteral(u"tr\u00e4cker\u20ac");
        QVERIFY(m_backup->restoreToController(true));
        QCOMPARE(m_channel->trace().at(2),
                 QStringLiteral(u"sendCommand system hostname tr\u00e4cker?"));
    }

    void sendsNoneAsItStands()
    {
        m_backup->domain = m_backup->nameServer = m_backup->ntpServer = QStringLiteral("none");
        QVERIFY(m_backup->restoreToController(false));
        QCOMPARE(m_channel->trace().mid(2, 3),
                 QStringList({QStringLiteral("sendCommand system domainname none"),
                              QStringLiteral("sendCommand system nameserver none"),
                              QStringLiteral("sendCommand system ntp_server none")}));
    }

    void refusesToBelieveInTooManyConfigurations()
    {
        m_channel->answer("config number_of_configs", "2147483647");
        QVERIFY(!m_backup->restoreToController(true));
        QCOMPARE(m_channel->trace().last(), QStringLiteral("queryInt config number_of_configs"));
    }

    void leavesOtherConfigurationsInPlace()
    {
        QVERIFY(m_backup->restoreToController(true));
        for (const QString &line : m_channel->trace()) {
            QVERIFY(!line.contains(QLatin1String("other")));
        }
    }

    void stopsWhenADeletionIsNotConfirmed_data()
    {
        QTest::addColumn<QByteArray>("answer");
        for (const char *answer : {"", "veltra2 error", "Veltra2 ok", "veltra2 ok ", " veltra2 ok",
                                   "veltra2 okay", "ok"}) {
            QTest::addRow("'%s'", answer) << QByteArray(answer);
        }
    }

    void stopsWhenADeletionIsNotConfirmed()
    {
        QFETCH(const QByteArray, answer);
        m_channel->answer("veltra2 config delete_config standard", answer);
        QVERIFY(!m_backup->restoreToController(true));
        QCOMPARE(m_channel->trace().last(),
                 QStringLiteral("sendCommandReply veltra2 config delete_config standard"));
    }

    void leavesTheActiveConfigurationAloneWhenItIsNotImported()
    {
        m_backup->activeConfig = QStringLiteral("other");
        QVERIFY(m_backup->restoreToController(true));
        QStringList expected = linesOf(steps());
        QCOMPARE(expected.removeAll(
                     QStringLiteral("sendCommand config active_config config20240305140709123")),
                 1);
        QCOMPARE(m_channel->trace(), expected);
    }

    void importsWhateverIsOfferedAfterAnEmptyBackup()
    {
        m_backup->configData.clear();
        QVERIFY(m_backup->restoreToController(true));
        QStringList expected = linesOf(steps());
        QCOMPARE(expected.removeAll(chunk(1)) + expected.removeAll(chunk(2)), 2);
        QCOMPARE(m_channel->trace(), expected);
    }

    void uploadsInChunks_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<QList<int>>("lengths");
        QTest::newRow("nothing") << 0 << QList<int>();
        QTest::newRow("1") << 1 << QList<int>{2};
        QTest::newRow("99") << 99 << QList<int>{132};
        QTest::newRow("100") << 100 << QList<int>{134};
        QTest::newRow("101") << 101 << QList<int>{134, 2};
        QTest::newRow("200") << 200 << QList<int>{134, 134};
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
        QCOMPARE(trace.first(), QStringLiteral("sendCommand system upload cancel"));
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
        QCOMPARE(m_channel->trace(),
                 QStringList({QStringLiteral("sendCommand system upload cancel"), chunk(1)}));
    }

    void uploadsSixteenMebibytes()
    {
        m_backup->configData = QByteArray(16 << 20, 'x');
        QCOMPARE(m_backup->uploadConfigData(), 0);
        QCOMPARE(m_channel->commandCount(), 1 + ((16 << 20) + 99) / 100);
    }

    void readsTheImportItems_data()
    {
        QTest::addColumn<QByteArray>("available");
        QTest::addColumn<QList<QByteArray>>("lines");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char *name, const QByteArray &available,
                            const QList<QByteArray> &lines, const QStringList &expected) {
            QTest::newRow(name) << available << lines << expected;
        };
        row("none", "0 config", {}, {});
        row("a negative number", "-1 config", {}, {});
        row("no number", "many config", {}, {});
        row("one", "1 config", {"a 'b' 'c'"}, {QStringLiteral("a")});
        row("more words", "1 config at last", {"a 'b' 'c'"}, {QStringLiteral("a")});
        row("only an identifier", "1 config", {"a"}, {QStringLiteral("a")});
        row("an identifier with blanks", "1 config", {"a b 'c'"}, {QStringLiteral("a b")});
        row("a quote without a blank", "1 config", {"a'b' 'c'"}, {QStringLiteral("a'b'")});
        row("nothing", "1 config", {""}, {QString()});
        row("in order", "3 config", {"c '' ''", "a '' ''", "b '' ''"},
            {QStringLiteral("c"), QStringLiteral("a"), QStringLiteral("b")});
        row("UTF-8", "1 config", {"\xc3\xa4 '' ''"}, {QStringLiteral(u"\u00e4")});
        row("like the base", "2 config", {"__base2 '' ''", "__BASE '' ''"},
            {QStringLiteral("__base2"), QStringLiteral("__BASE")});
    }

    void readsTheImportItems()
    {
        QFETCH(const QByteArray, available);
        QFETCH(const QList<QByteArray>, lines);
        QFETCH(const QStringList, expected);
        QStringList trace{QStringLiteral("queryString system import available")};
        m_channel->answer("system import available", available);
        for (int i = 1; i <= lines.size(); ++i) {
            const QByteArray query =
                "system import item i" + QByteArray::number(i).rightJustified(2, '0');
            m_channel->answer(query, lines.at(i - 1));
            trace << QStringLiteral("queryString ") + QString::fromLatin1(query);
        }
        QStringList items{QStringLiteral("before")};
        QVERIFY(m_backup->readImportItems(&items));
        QCOMPARE(items, expected);
        QCOMPARE(m_channel->trace(), trace);
    }

    void leavesTheListAloneWhenNothingIsOffered_data()
    {
        QTest::addColumn<QByteArray>("available");
        for (const char *answer : {"", "3", "config", "3 Config", "3 configs", "3  config",
                                   " 3 config", "3\tconfig", "2147483647 config"}) {
            QTest::addRow("'%s'", answer) << QByteArray(answer);
        }
    }

    void leavesTheListAloneWhenNothingIsOffered()
    {
        QFETCH(const QByteArray, available);
        m_channel->answer("system import available", available);
        QStringList items{QStringLiteral("before")};
        QVERIFY(!m_backup->readImportItems(&items));
        QCOMPARE(items, QStringList(QStringLiteral("before")));
        QCOMPARE(m_channel->commandCount(), 1);
    }

    void importsTheBaseFirstOrNotAtAll_data()
    {
        QTest::addColumn<int>("major");
        QTest::addColumn<int>("minor");
        QTest::addColumn<int>("micro");
        QTest::addColumn<bool>("isImported");
        QTest::newRow("not given") << -1 << -1 << -1 << false;
        QTest::newRow("0.99") << 0 << 99 << 9 << false;
        QTest::newRow("1") << 1 << -1 << -1 << false;
        QTest::newRow("1.16.9") << 1 << 16 << 9 << false;
        QTest::newRow("1.17") << 1 << 17 << -1 << true;
        QTest::newRow("1.17.0") << 1 << 17 << 0 << true;
        QTest::newRow("1.17.5") << 1 << 17 << 5 << true;
        QTest::newRow("1.18") << 1 << 18 << -1 << true;
        QTest::newRow("2") << 2 << -1 << -1 << true;
    }

    void importsTheBaseFirstOrNotAtAll()
    {
        QFETCH(const int, major);
        QFETCH(const int, minor);
        QFETCH(const int, micro);
        QFETCH(const bool, isImported);
        m_versions.interfaceVersion = {major, minor, micro};
        QStringList items;
        QVERIFY(m_backup->readImportItems(&items));
        QStringList expected{QStringLiteral("standard"), QStringLiteral("config20240305140709123")};
        if (isImported) {
            expected.prepend(QStringLiteral("__base"));
        }
        QCOMPARE(items, expected);
    }

    void anItemThatIsNotDescribedIsTakenForTheOneBefore()
    {
        m_channel->fail("system import item i02");
        QStringList items;
        QVERIFY(m_backup->readImportItems(&items));
        QCOMPARE(items,
                 QStringList({QStringLiteral("standard"), QStringLiteral("standard"),
                              QStringLiteral("config20240305140709123")}));
    }

    void stopsWhenARemovalIsNotConfirmed_data() { stopsWhenADeletionIsNotConfirmed_data(); }

    void stopsWhenARemovalIsNotConfirmed()
    {
        QFETCH(const QByteArray, answer);
        m_channel->answer("veltra2 cascade sub_slave slave-x", answer);
        QVERIFY(!m_backup->restoreToController(true));
        QCOMPARE(m_channel->trace().last(),
                 QStringLiteral("sendCommandReply veltra2 cascade sub_slave slave-x"));
    }

    void looksForASlaveThatIsRefused_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("with a word") << QByteArray("veltra2 error: no such slave");
        QTest::newRow("with another case") << QByteArray("Veltra2 OK");
        QTest::newRow("without a word") << QByteArray();
    }

    // Neither the second answer nor the third is looked at.
    void looksForASlaveThatIsRefused()
    {
        QFETCH(const QByteArray, answer);
        m_channel->answer("veltra2 cascade add_slave slave-a", answer);
        m_channel->answer("veltra2 cascade add_scanned_slave slave-a", answer);
        QStringList failed;
        QVERIFY(m_backup->restoreToController(true, &failed));
        const QString added = QStringLiteral("sendCommandReply veltra2 cascade add_slave slave-a");
        const QString found =
            QStringLiteral("sendCommandReply veltra2 cascade add_scanned_slave slave-a");
        QStringList expected = linesOf(steps());
        const int position = expected.indexOf(added) + 1;
        const QStringList more{cascadeTimeout, found, cascadeTimeout, added};
        expected = expected.mid(0, position) + more + expected.mid(position);
        QCOMPARE(m_channel->trace(), expected);
        QCOMPARE(failed, QStringList());
    }

    void stopsWhenASlaveThatWasRefusedCannotBeAdded_data()
    {
        QTest::addColumn<int>("position");
        QTest::newRow("not looked for") << 1;
        QTest::newRow("not added") << 2;
    }

    void stopsWhenASlaveThatWasRefusedCannotBeAdded()
    {
        QFETCH(const int, position);
        m_channel->answer("veltra2 cascade add_slave slave-a", "veltra2 error");
        m_channel->whenSent("veltra2 cascade add_slave slave-a", [this, position] {
            m_channel->whenSent("veltra2 cascade add_slave slave-a", {});
            m_channel->failNth(position);
        });
        QVERIFY(!m_backup->restoreToController(true));
        QCOMPARE(m_channel->trace().last(),
                 position == 1
                     ? QStringLiteral("sendCommandReply veltra2 cascade add_scanned_slave slave-a")
                     : QStringLiteral("sendCommandReply veltra2 cascade add_slave slave-a"));
    }

    void checksSlavesThatAreConnectedAlready()
    {
        m_channel->answer("cascade connected_slave d02", "slave-a");
        QStringList reconnected;
        QVERIFY(m_backup->restoreToController(true, nullptr, &reconnected));
        QCOMPARE(
            cascadeTrace(),
            QStringList({QStringLiteral("queryInt cascade number_of_connected_slaves"),
                         QStringLiteral("queryString cascade connected_slave d01"),
                         QStringLiteral("queryString cascade connected_slave d02"),
                         availabilityTimeout,
                         QStringLiteral("queryBool cascade connected_slave_available slave-a"),
                         availabilityTimeout,
                         QStringLiteral("queryBool cascade connected_slave_available slave-b")}));
        QCOMPARE(reconnected, m_backup->slaves);
    }

    void tellsWhichSlavesAreMissing_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("not available") << QByteArray("no");
        QTest::newRow("not answered") << QByteArray("?");
    }

    void tellsWhichSlavesAreMissing()
    {
        QFETCH(const QByteArray, answer);
        m_channel->answer("cascade connected_slave_available slave-a", answer);
        QStringList failed;
        QStringList reconnected;
        QVERIFY(m_backup->restoreToController(true, &failed, &reconnected));
        QCOMPARE(failed, QStringList(QStringLiteral("slave-a")));
        QCOMPARE(reconnected, QStringList(QStringLiteral("slave-b")));
        QStringList expected = linesOf(steps());
        expected.insert(expected.size() - 2, lost(QStringLiteral("slave-a")));
        QCOMPARE(m_channel->trace(), expected);
    }

    void appendsToTheListsOfSlaves()
    {
        m_channel->answer("cascade connected_slave_available slave-a", "no");
        QStringList failed{QStringLiteral("before")};
        QStringList reconnected{QStringLiteral("before")};
        QVERIFY(m_backup->restoreToController(true, &failed, &reconnected));
        QCOMPARE(failed, QStringList({QStringLiteral("before"), QStringLiteral("slave-a")}));
        QCOMPARE(reconnected, QStringList({QStringLiteral("before"), QStringLiteral("slave-b")}));
    }

    void worksWithoutListsOfSlaves()
    {
        m_channel->answer("cascade connected_slave_available slave-a", "no");
        QVERIFY(m_backup->restoreToController(true));
        QVERIFY(m_channel->trace().contains(lost(QStringLiteral("slave-a"))));
    }

    void removesAllSlavesThatTheBackupDoesNotKnow()
    {
        m_backup->slaves.clear();
        QVERIFY(m_backup->restoreToController(true));
        QCOMPARE(
            cascadeTrace(),
            QStringList({QStringLiteral("queryInt cascade number_of_connected_slaves"),
                         QStringLiteral("queryString cascade connected_slave d01"),
                         QStringLiteral("queryString cascade connected_slave d02"), cascadeTimeout,
                         QStringLiteral("sendCommandReply veltra2 cascade sub_slave slave-b"),
                         cascadeTimeout,
                         QStringLiteral("sendCommandReply veltra2 cascade sub_slave slave-x")}));
    }

    void isCompatibleWithTheSameOrANewerController_data()
    {
        QTest::addColumn<QString>("embedded");
        QTest::addColumn<BackendVersions>("controller");
        QTest::addColumn<bool>("isCompatible");
        const QString yes = QStringLiteral("yes");
        const QString no = QStringLiteral("no");
        // The backup: 4.2.1, firmware 3.5, "Model 5".
        const auto controller = [](const Version &pt, const Version &ct,
                                   const QString &model = QStringLiteral("Model 5")) {
            return BackendVersions{pt, {1, 27, 0}, ct, model};
        };
        QTest::newRow("the same") << yes << controller({4, 2, 1}, {3, 5, -1}) << true;
        QTest::newRow("newer") << yes << controller({5, 0, 0}, {4, -1, -1}) << true;
        QTest::newRow("older software") << yes << controller({4, 2, 0}, {3, 5, -1}) << false;
        QTest::newRow("software of fewer places")
            << yes << controller({4, 2, -1}, {3, 5, -1}) << false;
        QTest::newRow("unknown software") << yes << controller({-1, -1, -1}, {3, 5, -1}) << false;
        QTest::newRow("older firmware") << yes << controller({4, 2, 1}, {3, 4, 9}) << false;
        QTest::newRow("firmware of fewer places")
            << yes << controller({4, 2, 1}, {3, -1, -1}) << false;
        QTest::newRow("unknown firmware") << yes << controller({4, 2, 1}, {-1, -1, -1}) << false;
        QTest::newRow("older firmware that does not count")
            << no << controller({4, 2, 1}, {3, 4, 9}) << true;
        QTest::newRow("older software, not embedded")
            << no << controller({4, 1, 9}, {3, 5, -1}) << false;
        QTest::newRow("another model")
            << yes << controller({4, 2, 1}, {3, 5, -1}, QStringLiteral("model 5")) << false;
        QTest::newRow("no model") << no << controller({4, 2, 1}, {3, 5, -1}, QString()) << false;
    }

    void isCompatibleWithTheSameOrANewerController()
    {
        QFETCH(const QString, embedded);
        QFETCH(const BackendVersions, controller);
        QFETCH(const bool, isCompatible);
        m_versions = controller;
        m_channel->answer("system controller_embedded", embedded.toLatin1());
        QCOMPARE(m_backup->isCompatibleWithController(), isCompatible);
        bool isEmbedded = embedded == QLatin1String("no");
        QCOMPARE(m_backup->isCompatibleWithController(&isEmbedded), isCompatible);
    }

    void tellsWhetherTheControllerIsEmbedded_data()
    {
        QTest::addColumn<bool>("isEmbedded");
        QTest::newRow("embedded") << true;
        QTest::newRow("not embedded") << false;
    }

    void tellsWhetherTheControllerIsEmbedded()
    {
        QFETCH(const bool, isEmbedded);
        const QStringList asked{QStringLiteral("setTimeout 0 3000 1"),
                                QStringLiteral("queryBool system controller_embedded")};
        m_channel->answer("system controller_embedded", isEmbedded ? "yes" : "no");
        bool embedded = !isEmbedded;
        QVERIFY(m_backup->isCompatibleWithController(&embedded));
        QCOMPARE(embedded, isEmbedded);
        QCOMPARE(m_channel->takeTrace(),
                 asked + asked); // once for the caller, once for the versions
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
        QVERIFY_EXCEPTION_THROWN(m_backup->restoreToController(false), std::runtime_error);
    }

    void cancelsTheUpload_data()
    {
        QTest::addColumn<bool>("isAccepted");
        QTest::newRow("accepted") << true;
        QTest::newRow("refused") << false;
    }

    void cancelsTheUpload()
    {
        QFETCH(const bool, isAccepted);
        if (!isAccepted) {
            m_channel->fail("system upload cancel");
        }
        QCOMPARE(m_backup->cancelUpload(), isAccepted);
        QCOMPARE(m_channel->trace(),
                 QStringList(QStringLiteral("sendCommand system upload cancel")));
    }

private:
    // The part of the trace that concerns slaves and the cascade.
    QStringList cascadeTrace() const
    {
        const QStringList trace = m_channel->trace();
        return trace.mid(
            trace.indexOf(QStringLiteral("queryInt cascade number_of_connected_slaves")));
    }

    QScopedPointer<ScriptedChannel> m_channel;
    BackendVersions m_versions;
    QScopedPointer<FullBackup> m_backup;
};

VELTRA4_TEST(TestFullBackupRestore)
#include "tst_fullbackuprestore.moc"
