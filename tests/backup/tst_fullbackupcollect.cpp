#include "backup/fullbackup.h"
#include "channel/transferencoding.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <stdexcept>

namespace {

// What the failure of a command means for the collection.
enum class Failure {
    Stops,
    Throws,
    StopsAfterCancelling,
    SkipsTheSlot, // with the two lines that follow
    DoesNotMatter
};

struct Step
{
    const char *line;
    Failure failure = Failure::DoesNotMatter;
};

bool isCommand(const Step &step)
{
    return !QByteArray(step.line).startsWith("setTimeout");
}

const char *const cancelled = "sendCommand system download cancel";

// A collection in which nothing fails.
const QList<Step> steps{
    {"queryString system hostname", Failure::Stops},
    {"queryString system controller_serial", Failure::Stops},
    {"queryInt cascade number_of_connected_slaves", Failure::Stops},
    {"queryString cascade connected_slave d01", Failure::Stops},
    {"queryString cascade connected_slave d02", Failure::Stops},
    {"queryString system net", Failure::Stops},
    {"setTimeout 0 3000 1"},
    {"queryBool system controller_embedded", Failure::Throws},
    {"queryString system domainname", Failure::Stops},
    {"queryString system nameserver", Failure::Stops},
    {"queryString system ntp_server", Failure::Stops},
    {"queryString config active_config", Failure::Stops},
    {cancelled, Failure::Stops},
    {"queryInt config number_of_configs", Failure::Stops},
    {"setTimeout 0 7000 1"},
    {"sendCommand system download prepare 'config' '__base'", Failure::StopsAfterCancelling},
    {"queryString config config t01", Failure::SkipsTheSlot},
    {"setTimeout 0 7000 1"},
    {"sendCommand system download prepare 'config' 'standard'", Failure::DoesNotMatter},
    {"queryString config config t02", Failure::SkipsTheSlot},
    {"setTimeout 0 7000 1"},
    {"sendCommand system download prepare 'config' 'config20240305140709123'",
     Failure::DoesNotMatter},
    {"queryString system download 1", Failure::Stops},
    {"queryString system download 2", Failure::Stops},
};

QStringList linesOf(const QList<Step> &list)
{
    QStringList lines;
    for (const Step &step : list) {
        lines << QString::fromLatin1(step.line);
    }
    return lines;
}

struct Outcome
{
    QStringList trace;
    int result = 1;
    bool hasThrown = false;
};

// What has to happen when the n-th command fails, and with @p lasting all later ones.
Outcome expectedOutcome(int n, bool lasting)
{
    Outcome outcome;
    int commands = 0;
    for (int i = 0; i < steps.size(); ++i) {
        const Step &step = steps.at(i);
        outcome.trace << QString::fromLatin1(step.line);
        commands += isCommand(step) ? 1 : 0;
        const bool hasFailed = isCommand(step) && (commands == n || (lasting && commands > n));
        if (!hasFailed || step.failure == Failure::DoesNotMatter) {
            continue;
        }
        if (step.failure == Failure::SkipsTheSlot) {
            i += 2;
            commands += lasting ? 0 : 1; // the command that is not sent
            continue;
        }
        if (step.failure == Failure::StopsAfterCancelling) {
            outcome.trace << QString::fromLatin1(cancelled);
        }
        outcome.result = 0;
        outcome.hasThrown = step.failure == Failure::Throws;
        return outcome;
    }
    return outcome;
}

// A controller in the state that the sample backup describes.
void script(ScriptedChannel *channel)
{
    channel->answer("system hostname", "tracker-7");
    channel->answer("system controller_serial", "00001234");
    channel->answer("cascade number_of_connected_slaves", "2");
    channel->answer("cascade connected_slave d01", "slave-a");
    channel->answer("cascade connected_slave d02", "slave-b");
    channel->answer("system net", "192.168.0.7/24 gw 192.168.0.1");
    channel->answer("system controller_embedded", "yes");
    channel->answer("system domainname", "example.com");
    channel->answer("system nameserver", "192.168.0.2");
    channel->answer("system ntp_server", "192.168.0.3");
    channel->answerConfigurations({"standard", "config20240305140709123"},
                                  "config20240305140709123");
    const QByteArray data("\x00\x01\xfe\xff configurations", 19);
    channel->answer("system download 1", "2 '" + TransferEncoding::encode(data.left(10)) + "'");
    channel->answer("system download 2", "2 '" + TransferEncoding::encode(data.mid(10)) + "'");
}

} // namespace

class TestFullBackupCollect : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_versions = SampleBackup::versions();
        m_channel.reset(new ScriptedChannel);
        script(m_channel.data());
        m_backup.reset(new FullBackup(m_channel.data(), &m_versions));
    }

    void fillsEveryField()
    {
        QCOMPARE(m_backup->collectFromController(), 1);
        QCOMPARE(m_channel->trace(), linesOf(steps));
        QCOMPARE(SampleBackup::describe(*m_backup), SampleBackup::description());
    }

    void everyCommandMayFail_data()
    {
        QTest::addColumn<int>("n");
        QTest::addColumn<bool>("lasting");
        int n = 0;
        for (const Step &step : steps) {
            if (isCommand(step)) {
                ++n;
                QTest::addRow("%s", step.line) << n << false;
                QTest::addRow("%s and all later ones", step.line) << n << true;
            }
        }
    }

    void everyCommandMayFail()
    {
        QFETCH(const int, n);
        QFETCH(const bool, lasting);
        const Outcome expected = expectedOutcome(n, lasting);
        m_channel->failNth(n, lasting);
        int result = 0;
        QByteArray thrown;
        try {
            result = m_backup->collectFromController();
        } catch (const std::runtime_error &error) {
            thrown = error.what();
        }
        QCOMPARE(m_channel->trace(), expected.trace);
        QCOMPARE(result, expected.result);
        QCOMPARE(thrown, QByteArray(expected.hasThrown ? "connection error" : ""));
        QCOMPARE(m_backup->configData.isEmpty(), expected.result == 0);
    }

    void keepsWhatWasReadBeforeAFailure()
    {
        m_channel->fail("system net");
        QCOMPARE(m_backup->collectFromController(), 0);
        QCOMPARE(m_backup->name, QStringLiteral("tracker-7"));
        QCOMPARE(m_backup->systemModel, QStringLiteral("Model 5"));
        QCOMPARE(m_backup->slaves.size(), 2);
        QCOMPARE(m_backup->net, QString());
    }

    void anOldControllerCountsAsEmbedded_data()
    {
        QTest::addColumn<int>("major");
        for (const int major : {3, 0, -1}) {
            QTest::addRow("%d", major) << major;
        }
    }

    void anOldControllerCountsAsEmbedded()
    {
        QFETCH(const int, major);
        m_versions.ptVersion = {major, 99, 99};
        QVERIFY(m_backup->isControllerEmbedded());
        QCOMPARE(m_channel->trace(), QStringList());
    }

    void aNewControllerIsAskedWhetherItIsEmbedded_data()
    {
        QTest::addColumn<int>("major");
        QTest::addColumn<bool>("isEmbedded");
        for (const int major : {4, 5}) {
            QTest::addRow("%d, yes", major) << major << true;
            QTest::addRow("%d, no", major) << major << false;
        }
    }

    void aNewControllerIsAskedWhetherItIsEmbedded()
    {
        QFETCH(const int, major);
        QFETCH(const bool, isEmbedded);
        m_versions.ptVersion = {major, -1, -1};
        m_channel->answer("system controller_embedded", isEmbedded ? "yes" : "no");
        QCOMPARE(m_backup->isControllerEmbedded(), isEmbedded);
        QCOMPARE(m_channel->takeTrace(),
                 QStringList({QStringLiteral("setTimeout 0 3000 1"),
                              QStringLiteral("queryBool system controller_embedded")}));

        m_channel->fail("system controller_embedded");
        QVERIFY_EXCEPTION_THROWN(m_backup->isControllerEmbedded(), std::runtime_error);
    }

    void asksAnOldControllerForAllNetworkSettings()
    {
        m_versions.ptVersion = {3, 9, 9};
        QCOMPARE(m_backup->collectFromController(), 1);
        QStringList expected = linesOf(steps);
        expected.removeAll(QStringLiteral("setTimeout 0 3000 1"));
        expected.removeAll(QStringLiteral("queryBool system controller_embedded"));
        QCOMPARE(m_channel->trace(), expected);
        QCOMPARE(m_backup->domain, QStringLiteral("example.com"));
    }

    void doesNotAskAnotherThanAnEmbeddedControllerForItsNames()
    {
        m_channel->answer("system controller_embedded", "no");
        QCOMPARE(m_backup->collectFromController(), 1);
        QStringList expected = linesOf(steps);
        for (const char *query : {"domainname", "nameserver", "ntp_server"}) {
            QCOMPARE(
                expected.removeAll(QStringLiteral("queryString system ") + QLatin1String(query)),
                1);
        }
        QCOMPARE(m_channel->trace(), expected);
        for (const QString &text : {m_backup->domain, m_backup->nameServer, m_backup->ntpServer}) {
            QCOMPARE(text, QStringLiteral("none"));
        }
    }

    void readsTheSlaves_data()
    {
        QTest::addColumn<int>("number");
        for (const int number : {-1, 0, 1, 9, 10, 100}) {
            QTest::addRow("%d", number) << number;
        }
    }

    void readsTheSlaves()
    {
        QFETCH(const int, number);
        QStringList expected;
        QStringList trace{QStringLiteral("queryInt cascade number_of_connected_slaves")};
        m_channel->answer("cascade number_of_connected_slaves", QByteArray::number(number));
        for (int i = 1; i <= number; ++i) {
            const QByteArray query =
                "cascade connected_slave d" + QByteArray::number(i).rightJustified(2, '0');
            m_channel->answer(query, "slave-" + QByteArray::number(i));
            trace << QStringLiteral("queryString ") + QString::fromLatin1(query);
            expected << QStringLiteral("slave-%1").arg(i);
        }
        QStringList slaves{QStringLiteral("before")};
        QVERIFY(m_backup->readConnectedSlaves(&slaves));
        QCOMPARE(slaves, expected);
        QCOMPARE(m_channel->trace(), trace);
    }

    void keepsTheSlavesReadBeforeAFailure()
    {
        QStringList slaves{QStringLiteral("before")};
        m_channel->fail("cascade connected_slave d02");
        QVERIFY(!m_backup->readConnectedSlaves(&slaves));
        QCOMPARE(slaves, QStringList(QStringLiteral("slave-a")));
        m_channel->fail("cascade number_of_connected_slaves");
        QVERIFY(!m_backup->readConnectedSlaves(&slaves));
        QCOMPARE(slaves, QStringList());
    }

    void refusesToBelieveInTooManySlaves()
    {
        QStringList slaves;
        m_channel->answer("cascade number_of_connected_slaves", "2147483647");
        QVERIFY(!m_backup->readConnectedSlaves(&slaves));
        QCOMPARE(m_channel->commandCount(), 1);
    }

    void decodesAnswersAsUtf8()
    {
        m_channel->answer("system hostname",
                          "tr\xc3\xa4"
                          "cker");
        m_channel->answer("cascade connected_slave d01", "sl\xc3\xa4ve");
        m_channel->answer("config active_config", "\xe2\x82\xac");
        QCOMPARE(m_backup->collectFromController(), 1);
        QCOMPARE(m_backup->name, QStringLiteral(u"tr\u00e4cker"));
        QCOMPARE(m_backup->slaves.first(), QStringLiteral(u"sl\u00e4ve"));
        QCOMPARE(m_backup->activeConfig, QStringLiteral(u"\u20ac"));
    }

    void takesAnswersOf199Bytes()
    {
        m_channel->answer("system net", QByteArray(199, 'n'));
        QCOMPARE(m_backup->collectFromController(), 1);
        QCOMPARE(m_backup->net, QString(199, QLatin1Char('n')));
    }

    void doesNotDownloadWithoutConfigurations()
    {
        m_backup->configData = "before";
        m_channel->answer("config number_of_configs", "0");
        QCOMPARE(m_backup->downloadConfigData(), -1);
        QCOMPARE(m_channel->trace(),
                 QStringList({QString::fromLatin1(cancelled),
                              QStringLiteral("queryInt config number_of_configs")}));
        QCOMPARE(m_backup->configData, QByteArray());
        QCOMPARE(m_backup->collectFromController(), 0);
    }

    void downloadsTheBaseAloneForANegativeNumber()
    {
        m_channel->answer("config number_of_configs", "-1");
        QCOMPARE(m_backup->downloadConfigData(), 0);
        QCOMPARE(
            m_channel->trace(),
            QStringList({QString::fromLatin1(cancelled),
                         QStringLiteral("queryInt config number_of_configs"),
                         QStringLiteral("setTimeout 0 7000 1"),
                         QStringLiteral("sendCommand system download prepare 'config' '__base'"),
                         QStringLiteral("queryString system download 1"),
                         QStringLiteral("queryString system download 2")}));
    }

    void refusesToBelieveInTooManyConfigurations()
    {
        m_channel->answer("config number_of_configs", "10001");
        QCOMPARE(m_backup->downloadConfigData(), -1);
        QCOMPARE(m_channel->commandCount(), 2);
    }

    void namesSlotsBeyondNinetyNine()
    {
        m_channel->answer("config number_of_configs", "100");
        m_channel->answer("config config t100", "last");
        QCOMPARE(m_backup->downloadConfigData(), 0);
        QVERIFY(m_channel->trace().contains(
            QStringLiteral("sendCommand system download prepare 'config' 'last'")));
    }

    void downloadsAsManyChunksAsTheFirstAnswerSays_data()
    {
        QTest::addColumn<QList<QByteArray>>("numbers");
        QTest::addColumn<int>("chunks");
        QTest::newRow("one") << QList<QByteArray>{"1", "9"} << 1;
        QTest::newRow("three") << QList<QByteArray>{"3", "3", "3", "3"} << 3;
        QTest::newRow("none") << QList<QByteArray>{"0", "3"} << 1;
        QTest::newRow("a negative number") << QList<QByteArray>{"-3", "3"} << 1;
        QTest::newRow("others later") << QList<QByteArray>{"3", "1", "0", "9"} << 3;
    }

    void downloadsAsManyChunksAsTheFirstAnswerSays()
    {
        QFETCH(const QList<QByteArray>, numbers);
        QFETCH(const int, chunks);
        for (int i = 0; i < numbers.size(); ++i) {
            m_channel->answer("system download " + QByteArray::number(i + 1),
                              numbers.at(i) + " '" + TransferEncoding::encode("data") + "'");
        }
        QCOMPARE(m_backup->downloadConfigData(), 0);
        QCOMPARE(m_backup->configData, QByteArray("data").repeated(chunks));
        QCOMPARE(m_channel->trace().last(),
                 QStringLiteral("queryString system download %1").arg(chunks));
    }

    void acceptsAnyWayToWriteAChunk_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("no text") << QByteArray("1 ''") << QByteArray();
        QTest::newRow("one character") << QByteArray("1 'B'") << QByteArray();
        QTest::newRow("blanks") << QByteArray(" \t1   'BB' ") << QByteArray("A");
        QTest::newRow("no closing quote") << QByteArray("1 'BB") << QByteArray("A");
        QTest::newRow("something behind") << QByteArray("1'BB'=") << QByteArray("A");
    }

    void acceptsAnyWayToWriteAChunk()
    {
        QFETCH(const QByteArray, answer);
        QFETCH(const QByteArray, expected);
        m_channel->answer("system download 1", answer);
        QCOMPARE(m_backup->downloadConfigData(), 0);
        QCOMPARE(m_backup->configData, expected);
    }

    void breaksOffAtABrokenChunk_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no number") << QByteArray("'BB'");
        QTest::newRow("no text") << QByteArray("2");
        QTest::newRow("half a text") << QByteArray("2 '");
        QTest::newRow("no quotes") << QByteArray("2 BB");
        QTest::newRow("padding") << QByteArray("2 'BB=='");
        QTest::newRow("a blank in the text") << QByteArray("2 'BB '");
        QTest::newRow("beyond ASCII") << QByteArray("2 'B\xe4'");
    }

    void breaksOffAtABrokenChunk()
    {
        QFETCH(const QByteArray, answer);
        m_channel->answer("system download 2", answer);
        QCOMPARE(m_backup->downloadConfigData(), -22);
        QCOMPARE(m_backup->configData, QByteArray());
        QCOMPARE(m_channel->trace().last(), QStringLiteral("queryString system download 2"));
        m_channel->answer("system download 1", answer);
        QCOMPARE(m_backup->downloadConfigData(), -22);
        QCOMPARE(m_channel->trace().last(), QStringLiteral("queryString system download 1"));
    }

    void refusesToBelieveInTooManyChunks_data()
    {
        QTest::addColumn<int>("chunks");
        QTest::addColumn<int>("asked"); // for how many of them
        QTest::newRow("256 MiB") << 2684354 << 2;
        QTest::newRow("a chunk more") << 2684355 << 1;
        QTest::newRow("any number") << 2147483647 << 1;
    }

    void refusesToBelieveInTooManyChunks()
    {
        QFETCH(const int, chunks);
        QFETCH(const int, asked);
        m_channel->answer("system download 1", QByteArray::number(chunks) + " 'BB'");
        m_channel->fail("system download 2");
        QCOMPARE(m_backup->downloadConfigData(), -22);
        QCOMPARE(m_backup->configData, QByteArray());
        QCOMPARE(m_channel->trace().last(),
                 QStringLiteral("queryString system download %1").arg(asked));
    }

    void downloadsAnew()
    {
        QCOMPARE(m_backup->collectFromController(), 1);
        QCOMPARE(m_backup->collectFromController(), 1);
        QCOMPARE(SampleBackup::describe(*m_backup), SampleBackup::description());
        m_channel->fail("system download prepare 'config' '__base'");
        QCOMPARE(m_backup->downloadConfigData(), -1);
        QCOMPARE(m_backup->configData, QByteArray());
    }

    void downloadsSixteenMebibytes()
    {
        const int chunks = (16 << 20) / TransferEncoding::chunkSize;
        QByteArray expected;
        for (int chunk = 1; chunk <= chunks; ++chunk) {
            const QByteArray data = QByteArray::number(chunk).rightJustified(100, '.');
            m_channel->answer("system download " + QByteArray::number(chunk),
                              QByteArray::number(chunks) + " '" + TransferEncoding::encode(data)
                                  + "'");
            expected += data;
        }
        QCOMPARE(m_backup->downloadConfigData(), 0);
        QVERIFY(m_backup->configData == expected);
    }

    void cancelsTheDownload_data()
    {
        QTest::addColumn<bool>("isAccepted");
        QTest::newRow("accepted") << true;
        QTest::newRow("refused") << false;
    }

    void cancelsTheDownload()
    {
        QFETCH(const bool, isAccepted);
        if (!isAccepted) {
            m_channel->fail("system download cancel");
        }
        QCOMPARE(m_backup->cancelDownload(), isAccepted);
        QCOMPARE(m_channel->trace(), QStringList(QString::fromLatin1(cancelled)));
    }

private:
    QScopedPointer<ScriptedChannel> m_channel;
    BackendVersions m_versions;
    QScopedPointer<FullBackup> m_backup;
};

VELTRA4_TEST(TestFullBackupCollect)
#include "tst_fullbackupcollect.moc"
