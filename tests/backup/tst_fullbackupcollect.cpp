#include "backup/fullbackup.h"
#include "channel/transferencoding.h"
#include "tests/backup/procedure.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QTest>

namespace {

using Procedure::Failure;

constexpr char downloadCancelled[] = "sendCommand system download cancel";
constexpr char counted[] = "queryInt config number_of_configs";
constexpr char timeoutOfPreparation[] = "setTimeout 0 7000 1";
constexpr char preparedBase[] = "sendCommand system download prepare 'config' '__base'";

// A collection in which nothing fails.
const Procedure::Steps backupSteps{
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
    {downloadCancelled, Failure::Stops},
    {counted, Failure::Stops},
    {timeoutOfPreparation},
    {preparedBase, Failure::Stops, 0, downloadCancelled},
    {"queryString config config t01", Failure::DoesNotMatter, 2},
    {timeoutOfPreparation},
    {"sendCommand system download prepare 'config' 'standard'"},
    {"queryString config config t02", Failure::DoesNotMatter, 2},
    {timeoutOfPreparation},
    {"sendCommand system download prepare 'config' 'config20240305140709123'"},
    {"queryString system download 1", Failure::Stops},
    {"queryString system download 2", Failure::Stops},
};

QByteArray chunk(const QByteArray &total, const QByteArray &data)
{
    return total + " '" + TransferEncoding::encode(data) + '\'';
}

// A controller in the state that the sample backup describes.
void scriptBackup(ScriptedChannel *channel)
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
    channel->answer("system download 1", chunk("2", data.left(10)));
    channel->answer("system download 2", chunk("2", data.mid(10)));
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
        scriptBackup(m_channel.data());
        m_backup.reset(new FullBackup(m_channel.data(), &m_versions));
    }

    void fillsEveryField()
    {
        QCOMPARE(m_backup->collectFromController(), 1);
        QCOMPARE(m_channel->trace(), traceOf(backupSteps));
        QCOMPARE(SampleBackup::describe(*m_backup), SampleBackup::description());
    }

    void collectsAnew()
    {
        QCOMPARE(m_backup->collectFromController(), 1);
        QCOMPARE(m_backup->collectFromController(), 1);
        QCOMPARE(SampleBackup::describe(*m_backup), SampleBackup::description());
    }

    void everyCommandMayFail_data() { addFaultRows(backupSteps); }

    void everyCommandMayFail()
    {
        QFETCH(const int, n);
        QFETCH(const bool, lasting);
        const Procedure::Outcome expected = expectedOutcome(backupSteps, n, lasting);
        m_channel->failNth(n, lasting);
        m_backup->configData = "before";
        int result = 0;
        const auto collect = [&] { result = m_backup->collectFromController(); };
        QCOMPARE(Procedure::thrownBy(collect), expected.thrown);
        QCOMPARE(m_channel->trace(), expected.trace);
        QCOMPARE(result, expected.isComplete ? 1 : 0);
        const bool isDownloadBegun = expected.trace.contains(downloadCancelled);
        QCOMPARE(m_backup->configData.isEmpty(), isDownloadBegun && !expected.isComplete);
    }

    void onlyANewControllerIsAskedWhetherItIsEmbedded()
    {
        for (const int major : {-1, 0, 3}) {
            m_versions.ptVersion = {major, 99, 99};
            QVERIFY(m_backup->isControllerEmbedded());
            QCOMPARE(m_channel->trace(), QStringList());
        }
        for (const int major : {4, 5}) {
            m_versions.ptVersion = {major, -1, -1};
            for (const bool isEmbedded : {false, true}) {
                m_channel->answer("system controller_embedded", isEmbedded ? "yes" : "no");
                QCOMPARE(m_backup->isControllerEmbedded(), isEmbedded);
                QCOMPARE(
                    m_channel->takeTrace(),
                    QStringList({"setTimeout 0 3000 1", "queryBool system controller_embedded"}));
            }
        }
    }

    void doesNotAskAnotherThanAnEmbeddedControllerForItsNames()
    {
        m_channel->answer("system controller_embedded", "no");
        QCOMPARE(m_backup->collectFromController(), 1);
        QStringList expected = traceOf(backupSteps);
        for (const char *query : {"domainname", "nameserver", "ntp_server"}) {
            QVERIFY(expected.removeOne(QLatin1String("queryString system ") + query));
        }
        QCOMPARE(m_channel->trace(), expected);
        QCOMPARE(m_backup->domain, "none");
        QCOMPARE(m_backup->nameServer, "none");
        QCOMPARE(m_backup->ntpServer, "none");
    }

    void readsTheSlaves()
    {
        for (const int number : {-1, 0, 1, 100}) {
            QStringList expected;
            QStringList trace{"queryInt cascade number_of_connected_slaves"};
            m_channel->answer("cascade number_of_connected_slaves", QByteArray::number(number));
            for (int i = 1; i <= number; ++i) {
                const QString query =
                    QStringLiteral("cascade connected_slave d%1").arg(i, 2, 10, QLatin1Char('0'));
                expected << QStringLiteral("slave-%1").arg(i);
                trace << "queryString " + query;
                m_channel->answer(query.toLatin1(), expected.last().toLatin1());
            }
            QStringList slaves{"before"};
            QVERIFY(m_backup->readConnectedSlaves(&slaves));
            QCOMPARE(slaves, expected);
            QCOMPARE(m_channel->takeTrace(), trace);
        }
    }

    void keepsTheSlavesReadBeforeAFailure()
    {
        QStringList slaves{"before"};
        m_channel->fail("cascade connected_slave d02");
        QVERIFY(!m_backup->readConnectedSlaves(&slaves));
        QCOMPARE(slaves, QStringList("slave-a"));
        m_channel->fail("cascade number_of_connected_slaves");
        QVERIFY(!m_backup->readConnectedSlaves(&slaves));
        QCOMPARE(slaves, QStringList());
    }

    void refusesToBelieveInTooManyOfAnything()
    {
        QStringList slaves;
        m_channel->answer("cascade number_of_connected_slaves", "2147483647");
        QVERIFY(!m_backup->readConnectedSlaves(&slaves));
        QCOMPARE(m_channel->takeTrace().size(), 1);
        m_channel->answer("config number_of_configs", "10001");
        QCOMPARE(m_backup->downloadConfigData(), -1);
        QCOMPARE(m_channel->takeTrace(), QStringList({downloadCancelled, counted}));
    }

    void decodesAnswersAsUtf8()
    {
        m_channel->answer("system hostname", QByteArray("tr\xc3\xa4") + "cker");
        m_channel->answer("cascade connected_slave d01", "sl\xc3\xa4ve");
        m_channel->answer("config active_config", "\xe2\x82\xac");
        m_channel->answer("config config t01", "b\xc3\xa4");
        QCOMPARE(m_backup->collectFromController(), 1);
        QCOMPARE(m_backup->name, QStringLiteral(u"tr\u00e4cker"));
        QCOMPARE(m_backup->slaves.first(), QStringLiteral(u"sl\u00e4ve"));
        QCOMPARE(m_backup->activeConfig, QStringLiteral(u"\u20ac"));
        QVERIFY(m_channel->trace().contains(
            QStringLiteral(u"sendCommand system download prepare 'config' 'b\u00e4'")));
    }

    void doesNotDownloadWithoutConfigurations()
    {
        m_backup->configData = "before";
        m_channel->answer("config number_of_configs", "0");
        QCOMPARE(m_backup->downloadConfigData(), -1);
        QCOMPARE(m_channel->trace(), QStringList({downloadCancelled, counted}));
        QCOMPARE(m_backup->configData, QByteArray());
        QCOMPARE(m_backup->collectFromController(), 0);
    }

    void downloadsTheBaseAloneForANegativeNumber()
    {
        m_channel->answer("config number_of_configs", "-1");
        QCOMPARE(m_backup->downloadConfigData(), 0);
        QCOMPARE(m_channel->trace(),
                 QStringList({downloadCancelled, counted, timeoutOfPreparation, preparedBase,
                              "queryString system download 1", "queryString system download 2"}));
    }

    void tellsADownloadThatDoesNotBeginFromOneThatBreaksOff()
    {
        m_channel->fail("system download 2");
        QCOMPARE(m_backup->downloadConfigData(), -22);
        m_channel->fail("system download prepare 'config' '__base'");
        QCOMPARE(m_backup->downloadConfigData(), -1);
    }

    void downloadsAsManyChunksAsTheFirstAnswerSays_data()
    {
        QTest::addColumn<QList<QByteArray>>("numbers");
        QTest::addColumn<int>("chunks");
        QTest::newRow("one") << QList<QByteArray>{"1", "9"} << 1;
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
                              chunk(numbers.at(i), "data"));
        }
        QCOMPARE(m_backup->downloadConfigData(), 0);
        QCOMPARE(m_backup->configData, QByteArray("data").repeated(chunks));
        QCOMPARE(m_channel->trace().last(),
                 QStringLiteral("queryString system download %1").arg(chunks));
    }

    void breaksOffAtABrokenChunk()
    {
        for (const char *answer : {"", "2 BB", "2 'BB=='"}) {
            for (const int number : {2, 1}) {
                scriptBackup(m_channel.data());
                m_channel->answer("system download " + QByteArray::number(number), answer);
                QCOMPARE(m_backup->downloadConfigData(), -22);
                QCOMPARE(m_backup->configData, QByteArray());
                QCOMPARE(m_channel->trace().last(),
                         QStringLiteral("queryString system download %1").arg(number));
            }
        }
    }

    void refusesToBelieveInTooManyChunks()
    {
        m_channel->fail("system download 2");
        m_channel->answer("system download 1", "2684354 'BB'"); // 256 MiB
        QCOMPARE(m_backup->downloadConfigData(), -22);
        QCOMPARE(m_channel->trace().last(), "queryString system download 2");
        m_channel->answer("system download 1", "2684355 'BB'");
        QCOMPARE(m_backup->downloadConfigData(), -22);
        QCOMPARE(m_channel->trace().last(), "queryString system download 1");
        QCOMPARE(m_backup->configData, QByteArray());
    }

    void cancelsTheDownload()
    {
        QVERIFY(m_backup->cancelDownload());
        m_channel->fail("system download cancel");
        QVERIFY(!m_backup->cancelDownload());
        QCOMPARE(m_channel->trace(), QStringList({downloadCancelled, downloadCancelled}));
    }

private:
    QScopedPointer<ScriptedChannel> m_channel;
    BackendVersions m_versions;
    QScopedPointer<FullBackup> m_backup;
};

VELTRA4_TEST(TestFullBackupCollect)
#include "tst_fullbackupcollect.moc"
