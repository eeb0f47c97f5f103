#include "backup/fullbackup.h"
#include "channel/controller.h"
#include "tests/support/testmain.h"
#include "tests/transfer/backuptesting.h"
#include "transfer/automaticbackup.h"

#include <QDate>
#include <QDir>
#include <QTest>

using namespace TransferTesting;

namespace {

// What became of the backup of the day.
enum class Result { NotDue, AlreadyMade, Made, Failed };

const QString version = "v4.%1%2 (build 7)"; // of the host
const QString noBackup = ScriptedChannel::reported("Error execute the automatic backup");
const QStringList firstQueries{"queryString status active", "queryString system hostname"};

QString nameOfToday(const QString &host = "lab")
{
    return "backup_" + QDate::currentDate().toString("yyyy-MM-dd") + '_' + host + ".xml";
}

// No window may open: the driver expects none.
struct AutomaticBackupStage : BackupStage
{
    AutomaticBackupStage() { qputenv("HOME", folder.path().toLocal8Bit()); }

    QString directory(const QString &hostVersion = version) const
    {
        return path(".ZOR/VELTRA4/" + hostVersion + "/backup");
    }

    Result run()
    {
        if (makeBackupOfTheDay(Controller(&channel), &versions, version)) {
            return Result::AlreadyMade;
        }
        if (channel.trace().last() == noBackup) {
            return Result::Failed;
        }
        return channel.trace().size() > firstQueries.size() ? Result::Made : Result::NotDue;
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
};

} // namespace

class TestAutomaticBackup : public QObject
{
    Q_OBJECT

private slots:
    void writesTheWholeController()
    {
        AutomaticBackupStage f;
        f.noteCursorAt("system net");
        QCOMPARE(f.run(), Result::Made);
        QCOMPARE(f.cursors, QList<bool>({false}));
        QCOMPARE(f.channel.trace(), firstQueries + BackupStage::collection());
        QCOMPARE(f.files(), QStringList(nameOfToday()));
        FullBackup written(&f.channel, &f.versions);
        QVERIFY(written.readFromFile(f.directory() + '/' + nameOfToday()));
        QCOMPARE(written.name, "lab");
        QCOMPARE(written.configData, QByteArray("one two"));
    }

    void aBusyControllerIsNotDisturbed()
    {
        for (const char *status : {"tracking", "None", "none ", "\"none\"", ""}) {
            AutomaticBackupStage f;
            f.channel.answer("status active", status);
            QVERIFY2(f.run() == Result::NotDue, status);
            QCOMPARE(f.channel.trace(), firstQueries.mid(0, 1));
            QVERIFY(!QFile::exists(f.path(".ZOR")));
        }
    }

    void aControllerThatCannotTellCountsAsIdle()
    {
        AutomaticBackupStage f;
        f.channel.fail("status active");
        QCOMPARE(f.run(), Result::Made);
        QCOMPARE(f.files(), QStringList(nameOfToday()));
    }

    void aControllerWithoutNameIsNotBackedUp()
    {
        AutomaticBackupStage f;
        f.channel.fail("system hostname");
        QCOMPARE(f.run(), Result::NotDue);
        QCOMPARE(f.channel.trace(), firstQueries);
        QVERIFY(!QFile::exists(f.path(".ZOR")));
    }

    void theSecondRunOfADayDoesNothing()
    {
        const QStringList names{"backup_2024-01-01_lab.xml", "backup_2024-02-01_lab.xml",
                                nameOfToday()};
        AutomaticBackupStage f;
        f.makeFiles(names);
        QCOMPARE(f.run(), Result::AlreadyMade);
        QCOMPARE(f.channel.trace(), firstQueries);
        QCOMPARE(f.files(), names);
        QCOMPARE(contentsOf(f.directory() + '/' + nameOfToday()), nameOfToday().toLatin1());
    }

    void onlyTheNewestOlderBackupIsKept()
    {
        AutomaticBackupStage f;
        f.makeFiles({"backup_2024-02-01_lab.xml", "backup_2024-03-01_lab.xml",
                     "backup_2024-01-01_lab.xml"});
        QCOMPARE(f.run(), Result::Made);
        QCOMPARE(f.files(), QStringList({"backup_2024-03-01_lab.xml", nameOfToday()}));
        QCOMPARE(contentsOf(f.directory() + "/backup_2024-03-01_lab.xml"),
                 QByteArray("backup_2024-03-01_lab.xml"));
    }

    void othersAreNotTouched()
    {
        QStringList files{"backup_2024-01-01_LAB.xml",     "backup_2024-01-01_hall.xml",
                          "backup_2024-01-01_lab.xml.bak", "backup_2024-01-01_lab2.xml",
                          "backup_2024-01-01_my_lab.xml",  "backup_2024-01-01_mylab.xml",
                          "backup_2024-02-01_LAB.xml",     "backup_2024-02-01_hall.xml",
                          "backup_2024-02-01_lab.dat",     "backup_2024-02-01_lab2.xml",
                          "backup_2024-02-01_my_lab.xml",  "backup_2024-02-01_mylab.xml",
                          "manual_2024-01-01_lab.xml",     "backup_2024-02-01_lab.xml"};
        AutomaticBackupStage f;
        f.makeFiles(files + QStringList("backup_2024-01-01_lab.xml"));
        QVERIFY(QDir(f.directory()).mkdir("backup_2023-01-01_lab.xml"));
        QCOMPARE(f.run(), Result::Made);
        files << nameOfToday();
        files.sort();
        QCOMPARE(f.files(), files);
        QVERIFY(QFileInfo(f.directory() + "/backup_2023-01-01_lab.xml").isDir());
    }

    void whatFitsTheFilterIsPruned()
    {
        AutomaticBackupStage f;
        f.makeFiles({"backup_2024-01-01_lab.xml", "backup_2024-1-1_x_lab.xml",
                     "backup_20240101_x_lab.xml", "backup__lab.xml",
                     "backup_old_2024-01-01_lab.xml"});
        QCOMPARE(f.run(), Result::Made);
        QCOMPARE(f.files(), QStringList({nameOfToday(), "backup_old_2024-01-01_lab.xml"}));
    }

    void wildcardsInTheNameStayAsTheyAre()
    {
        AutomaticBackupStage f;
        f.channel.answer("system hostname", "l*b");
        f.makeFiles({"backup_2024-01-01_hall.xml", "backup_2024-01-01_l*b.xml",
                     "backup_2024-02-01_lab.xml", "backup_2024-03-01_lob.xml"});
        QCOMPARE(f.run(), Result::Made);
        QCOMPARE(f.files(),
                 QStringList({"backup_2024-01-01_hall.xml", "backup_2024-03-01_lob.xml",
                              nameOfToday("l*b")}));
    }

    void aVersionMayArriveBeforeTheDirectoryIsMade()
    {
        AutomaticBackupStage f;
        QString latest;
        f.channel.whenSent("system hostname", [&latest] { latest = "v4.3"; });
        QVERIFY(!makeBackupOfTheDay(Controller(&f.channel), &f.versions, latest));
        QVERIFY(QFile::exists(f.directory("v4.3") + '/' + nameOfToday()));
        QVERIFY(!QFile::exists(f.directory("") + '/' + nameOfToday()));
    }

    void olderBackupsGoBeforeTheNewOneIsCollected()
    {
        AutomaticBackupStage f;
        f.makeFiles({"backup_2024-01-01_lab.xml", "backup_2024-02-01_lab.xml"});
        QStringList filesMeanwhile;
        f.channel.whenSent("cascade number_of_connected_slaves",
                           [&] { filesMeanwhile = f.files(); });
        f.channel.fail("system net");
        QCOMPARE(f.run(), Result::Failed);
        QCOMPARE(filesMeanwhile, QStringList("backup_2024-02-01_lab.xml"));
        QCOMPARE(f.files(), QStringList("backup_2024-02-01_lab.xml"));
    }

    void aFailedCollectionIsReported()
    {
        // The second one breaks the connection.
        for (const char *query : {"system net", "system controller_embedded"}) {
            AutomaticBackupStage f;
            f.channel.fail(query);
            QVERIFY2(f.run() == Result::Failed, query);
            const QStringList trace = f.channel.trace();
            QVERIFY2(trace.at(trace.size() - 2).endsWith(query), query);
            QCOMPARE(f.files(), QStringList());
        }
    }

    void aDirectoryThatCannotBeMadeIsReported()
    {
        AutomaticBackupStage f;
        writeFile(f.path(".ZOR"), "in the way");
        QCOMPARE(f.run(), Result::Failed);
    }
};

VELTRA4_TEST(TestAutomaticBackup)
#include "tst_automaticbackup.moc"
