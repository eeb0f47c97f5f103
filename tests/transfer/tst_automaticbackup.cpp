#include "backup/fullbackup.h"
#include "channel/controller.h"
#include "tests/support/modaldriver.h"
#include "tests/support/testmain.h"
#include "tests/transfer/backuptesting.h"
#include "tests/transfer/transfertesting.h"
#include "transfer/automaticbackup.h"

#include <QDate>
#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace BackupTesting;
using namespace TransferTesting;

namespace {

// What became of the backup of the day.
enum class Result { NotDue, AlreadyMade, Made, Failed };

} // namespace

class TestAutomaticBackup : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("HOME", m_home->path().toLocal8Bit());
        m_channel = std::make_unique<ScriptedChannel>();
        scriptController(m_channel.get());
        m_versions = askedVersions();
        m_driver = std::make_unique<ModalDriver>();
    }

    void cleanup()
    {
        m_driver.reset();
        m_channel.reset();
        m_home.reset();
        QCOMPARE(takeCursors(), 0);
    }

    void writesTheWholeController()
    {
        QCOMPARE(run(), Result::Made);

        FaultyBackup rules(0, false);
        rules.succeeds("queryString status active");
        rules.succeeds("queryString system hostname");
        QVERIFY(rules.collects());
        QCOMPARE(m_channel->trace(), rules.trace);

        QCOMPARE(files(), QStringList(nameOfToday()));
        FullBackup written(m_channel.get(), &m_versions);
        QVERIFY(written.readFromFile(directory() + '/' + nameOfToday()));
        QCOMPARE(written.name, QString("lab"));
        QCOMPARE(written.configData, QByteArray("one two"));
    }

    void theHostVersionIsPartOfTheDirectory_data()
    {
        QTest::addColumn<QString>("version");
        QTest::newRow("v4.12.3") << "v4.12.3";
        QTest::newRow("v3.0") << "v3.0";
        QTest::newRow("with more behind") << "v4.2 (build 7)";
        QTest::newRow("with place markers") << "v4.%1%2";
        QTest::newRow("not told yet") << "";
    }

    void theHostVersionIsPartOfTheDirectory()
    {
        QFETCH(const QString, version);
        QCOMPARE(run(version), Result::Made);
        QVERIFY(QFile::exists(directory(version) + '/' + nameOfToday()));
    }

    void aBusyControllerIsNotDisturbed_data()
    {
        QTest::addColumn<QByteArray>("status");
        QTest::newRow("tracking") << QByteArray("tracking");
        QTest::newRow("None") << QByteArray("None");
        QTest::newRow("none with a blank") << QByteArray("none ");
        QTest::newRow("none in quotes") << QByteArray("\"none\"");
        QTest::newRow("empty") << QByteArray("");
    }

    void aBusyControllerIsNotDisturbed()
    {
        QFETCH(const QByteArray, status);
        m_channel->answer("status active", status);
        QCOMPARE(run(), Result::NotDue);
        QCOMPARE(m_channel->trace(), QStringList("queryString status active"));
        QVERIFY(!QFile::exists(m_home->path() + "/.ZOR"));
    }

    void aControllerThatCannotTellCountsAsIdle()
    {
        m_channel->fail("status active");
        QCOMPARE(run(), Result::Made);
        QCOMPARE(files(), QStringList(nameOfToday()));
    }

    void aControllerWithoutNameIsNotBackedUp()
    {
        m_channel->fail("system hostname");
        QCOMPARE(run(), Result::NotDue);
        QCOMPARE(m_channel->trace(),
                 QStringList({"queryString status active", "queryString system hostname"}));
        QVERIFY(!QFile::exists(m_home->path() + "/.ZOR"));
    }

    void theSecondRunOfADayDoesNothing()
    {
        const QStringList names{"backup_2024-01-01_lab.xml", "backup_2024-02-01_lab.xml",
                                nameOfToday()};
        makeFiles(names);
        QCOMPARE(run(), Result::AlreadyMade);
        QCOMPARE(m_channel->trace(),
                 QStringList({"queryString status active", "queryString system hostname"}));
        QCOMPARE(files(), names);
        QCOMPARE(contentsOf(directory() + '/' + nameOfToday()), nameOfToday().toLatin1());
    }

    void controllersAreBackedUpApart()
    {
        QCOMPARE(run(), Result::Made);
        m_channel->answer("system hostname", "hall");
        QCOMPARE(run(), Result::Made);
        QCOMPARE(files(), QStringList({nameOfToday("hall"), nameOfToday("lab")}));
    }

    void onlyTheNewestOlderBackupIsKept()
    {
        makeFiles({"backup_2024-02-01_lab.xml", "backup_2024-03-01_lab.xml",
                   "backup_2024-01-01_lab.xml"});
        QCOMPARE(run(), Result::Made);
        QCOMPARE(files(), QStringList({"backup_2024-03-01_lab.xml", nameOfToday()}));
        QCOMPARE(contentsOf(directory() + "/backup_2024-03-01_lab.xml"),
                 QByteArray("backup_2024-03-01_lab.xml"));
    }

    void aSingleOlderBackupIsKept()
    {
        makeFiles({"backup_2024-02-01_lab.xml"});
        QCOMPARE(run(), Result::Made);
        QCOMPARE(files(), QStringList({"backup_2024-02-01_lab.xml", nameOfToday()}));
    }

    void othersAreNotTouched()
    {
        const QStringList others{"backup_2024-01-01_LAB.xml",     "backup_2024-01-01_hall.xml",
                                 "backup_2024-01-01_lab.xml.bak", "backup_2024-01-01_lab2.xml",
                                 "backup_2024-01-01_my_lab.xml",  "backup_2024-01-01_mylab.xml",
                                 "backup_2024-02-01_LAB.xml",     "backup_2024-02-01_hall.xml",
                                 "backup_2024-02-01_lab.dat",     "backup_2024-02-01_lab2.xml",
                                 "backup_2024-02-01_my_lab.xml",  "backup_2024-02-01_mylab.xml",
                                 "manual_2024-01-01_lab.xml"};
        makeFiles(others + QStringList({"backup_2024-01-01_lab.xml", "backup_2024-02-01_lab.xml"}));
        QVERIFY(QDir(directory()).mkdir("backup_2023-01-01_lab.xml"));
        QCOMPARE(run(), Result::Made);
        QStringList expected = others;
        expected << "backup_2024-02-01_lab.xml" << nameOfToday();
        expected.sort();
        QCOMPARE(files(), expected);
        QVERIFY(QFileInfo(directory() + "/backup_2023-01-01_lab.xml").isDir());
    }

    void whatFitsTheFilterIsPruned()
    {
        makeFiles({"backup_2024-01-01_lab.xml", "backup_2024-1-1_x_lab.xml",
                   "backup_20240101_x_lab.xml", "backup__lab.xml",
                   "backup_old_2024-01-01_lab.xml"});
        QCOMPARE(run(), Result::Made);
        QCOMPARE(files(), QStringList({nameOfToday(), "backup_old_2024-01-01_lab.xml"}));
    }

    void aVersionMayArriveBeforeTheDirectoryIsMade()
    {
        QString version;
        m_channel->whenSent("system hostname", [&version] { version = "v4.3"; });
        QVERIFY(!makeBackupOfTheDay(Controller(m_channel.get()), &m_versions, version));
        QVERIFY(QFile::exists(directory("v4.3") + '/' + nameOfToday()));
        QVERIFY(!QFile::exists(directory("") + '/' + nameOfToday()));
    }

    void wildcardsInTheNameStayAsTheyAre()
    {
        m_channel->answer("system hostname", "l*b");
        makeFiles({"backup_2024-01-01_hall.xml", "backup_2024-01-01_l*b.xml",
                   "backup_2024-02-01_lab.xml", "backup_2024-03-01_lob.xml"});
        QCOMPARE(run(), Result::Made);
        QCOMPARE(files(),
                 QStringList({"backup_2024-01-01_hall.xml", "backup_2024-03-01_lob.xml",
                              nameOfToday("l*b")}));
    }

    void olderBackupsGoBeforeTheNewOneIsCollected()
    {
        makeFiles({"backup_2024-01-01_lab.xml", "backup_2024-02-01_lab.xml"});
        QStringList filesMeanwhile;
        m_channel->whenSent("cascade number_of_connected_slaves",
                            [&] { filesMeanwhile = files(); });
        m_channel->fail("system net");
        QCOMPARE(run(), Result::Failed);
        QCOMPARE(filesMeanwhile, QStringList("backup_2024-02-01_lab.xml"));
        QCOMPARE(files(), QStringList("backup_2024-02-01_lab.xml"));
    }

    void everySingleCommandMayFail_data()
    {
        QTest::addColumn<bool>("lasting");
        QTest::newRow("once") << false;
        QTest::newRow("from then on") << true;
    }

    void everySingleCommandMayFail()
    {
        QFETCH(const bool, lasting);
        int failAt = 0;
        for (bool isFaultMet = true; isFaultMet;) {
            cleanup();
            init();
            FaultyBackup rules(++failAt, lasting);
            rules.succeeds("queryString status active");
            Result expected = Result::NotDue;
            if (rules.succeeds("queryString system hostname")) {
                expected = rules.collects() ? Result::Made : Result::Failed;
            }
            if (expected == Result::Failed) {
                rules.trace << ScriptedChannel::reported("Error execute the automatic backup");
            }
            m_channel->failNth(failAt, lasting);
            QCOMPARE(run(), expected);
            QCOMPARE(m_channel->trace(), rules.trace);
            QCOMPARE(files(),
                     expected == Result::Made ? QStringList(nameOfToday()) : QStringList());
            isFaultMet = rules.isFaultMet;
        }
        QCOMPARE(failAt - 1, 19);
    }

    void aLostConnectionIsReported()
    {
        m_channel->fail("system controller_embedded");
        QCOMPARE(run(), Result::Failed);
        QCOMPARE(m_channel->trace().mid(m_channel->trace().size() - 2),
                 QStringList({"queryBool system controller_embedded",
                              ScriptedChannel::reported("Error execute the automatic backup")}));
    }

    void aDirectoryThatCannotBeMadeIsReported()
    {
        writeFile(m_home->path() + "/.ZOR", "in the way");
        QCOMPARE(run(), Result::Failed);
        QCOMPARE(m_channel->trace().last(),
                 ScriptedChannel::reported("Error execute the automatic backup"));
    }

    void aFullDiskIsReportedAndLeavesNoFile()
    {
        makeFiles({"backup_2024-01-01_lab.xml", "backup_2024-02-01_lab.xml"});
        {
            const FileSizeLimit full(100);
            QCOMPARE(run(), Result::Failed);
        }
        QCOMPARE(m_channel->trace().last(),
                 ScriptedChannel::reported("Error execute the automatic backup"));
        QCOMPARE(files(), QStringList("backup_2024-02-01_lab.xml"));
    }

    void showsNoWaitCursor()
    {
        bool isShown = true;
        m_channel->whenSent("system net",
                            [&] { isShown = QGuiApplication::overrideCursor() != nullptr; });
        QCOMPARE(run(), Result::Made);
        QVERIFY(!isShown);
    }

private:
    QString directory(const QString &version = "v4.2") const
    {
        return m_home->path() + "/.ZOR/VELTRA4/" + version + "/backup";
    }
    static QString today() { return QDate::currentDate().toString("yyyy-MM-dd"); }
    static QString nameOfToday(const QString &host = "lab")
    {
        return "backup_" + today() + '_' + host + ".xml";
    }

    Result run(const QString &version = "v4.2")
    {
        const int before = m_channel->trace().size();
        if (makeBackupOfTheDay(Controller(m_channel.get()), &m_versions, version)) {
            return Result::AlreadyMade;
        }
        const QStringList trace = m_channel->trace().mid(before);
        if (trace.contains(ScriptedChannel::reported("Error execute the automatic backup"))) {
            return Result::Failed;
        }
        const int questions = 2; // what it is doing, and its name
        return trace.size() > questions ? Result::Made : Result::NotDue;
    }

    void makeFiles(const QStringList &names)
    {
        QVERIFY(QDir().mkpath(directory()));
        for (const QString &name : names) {
            writeFile(directory() + '/' + name, name.toLatin1());
        }
    }

    // In byte order.
    QStringList files() const
    {
        return QDir(directory()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<ScriptedChannel> m_channel;
    BackendVersions m_versions;
    std::unique_ptr<ModalDriver> m_driver; // expects nothing: no window may open
};

VELTRA4_TEST(TestAutomaticBackup)
#include "tst_automaticbackup.moc"
