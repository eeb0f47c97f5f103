#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QTemporaryDir>
#include <QtTest>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

using Tool::backupOf;

class TestToolList : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void printsATable()
    {
        Tool::makeFile(path("a/old.xml"), backupOf("tracker-7", "2024-03-05T14:07:09"));
        Tool::makeFile(path("a/new.xml"), backupOf("lab", "2024-11-05T14:07:09"));
        Tool::makeFile(path("a/broken.xml"), "<ZOR/>");
        Tool::makeFile(
            path("a/nothing.XML"),
            backupOf("lab", "2023-01-01T00:00:00").replace("AAH+/yBjb25maWd1cmF0aW9ucw==", ""));
        Tool::makeFile(path("a/notes.txt"), "not looked at");
        const Tool::Run run = Tool::run({"list", path("a"), "/nosuch.xml"});
        QCOMPARE(run.exitCode, 2);
        const QString table =
            "CREATED              CONTROLLER  SERIAL    MODEL    TRACKING  FIRMWARE  "
            "BYTES  VERDICT     FILE\n"
            "2024-11-05 14:07:09  lab         00001234  Model 5  v4.2.1    v3.5      "
            "19     good        %1/new.xml\n"
            "2024-03-05 14:07:09  tracker-7   00001234  Model 5  v4.2.1    v3.5      "
            "19     good        %1/old.xml\n"
            "2023-01-01 00:00:00  lab         00001234  Model 5  v4.2.1    v3.5      "
            "0      empty       %1/nothing.XML\n"
            "-                    -           -         -        -         -         "
            "-      refused     %1/broken.xml\n"
            "-                    -           -         -        -         -         "
            "-      unreadable  /nosuch.xml\n";
        QCOMPARE(run.output, table.arg(path("a")));
        const QStringList complaints = run.complaint.split('\n', Qt::SkipEmptyParts);
        QCOMPARE(complaints.size(), 3);
        QVERIFY(
            complaints.at(0).startsWith(path("a/nothing.XML") + ": It holds no configurations"));
        QCOMPARE(complaints.at(1), path("a/broken.xml") + ": The document is empty.");
        QCOMPARE(complaints.at(2), QString("/nosuch.xml: No such file or directory."));
    }

    void printsOneArray()
    {
        const QString file = Tool::makeFile(path("a.xml"), backupOf("lab", "2024-11-05T14:07:09"));
        const Tool::Run run = Tool::run({"list", "--json", file});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.array().size(), 1);
        const QJsonObject listed = run.array().first().toObject();
        QCOMPARE(listed["file"].toString(), file);
        QCOMPARE(listed["verdict"].toString(), QString("good"));
        const QJsonObject backup = listed["backup"].toObject();
        QCOMPARE(backup["ZORControllerInfo"].toObject()["name"].toString(), QString("lab"));
    }

    void printsOneControllerOnly()
    {
        Tool::makeFile(path("a.xml"), backupOf("lab", "2024-11-05T14:07:09"));
        Tool::makeFile(path("b.xml"), backupOf("cell", "2024-11-05T14:07:09"));
        const QJsonArray all =
            Tool::run({"list", "--json", "--controller", "cell", m_folder->path()}).array();
        QCOMPARE(all.size(), 1);
        QCOMPARE(all.first().toObject()["file"].toString(), path("b.xml"));
    }

    void keepsToItsColumns()
    {
        Tool::makeFile(
            path("a.xml"),
            backupOf("a\nb", "2024-11-05T14:07:09").replace("Model 5", QByteArray(900, 'm')));
        const Tool::Run run = Tool::run({"list", m_folder->path()});
        const QString row = run.output.section('\n', 1, 1);
        QVERIFY2(row.startsWith("2024-11-05 14:07:09  a\\u{a}b     00001234  " + QString(29, 'm')
                                + "...  v4.2.1"),
                 qPrintable(row));
    }

    void looksWhereAutomaticBackupsGo()
    {
        const QDir home = QDir::home();
        const QString root = home.filePath(".ZOR/VELTRA4");
        Tool::makeFile(root + "/v4.2.0/backup/backup_2024-03-05_a.xml",
                       backupOf("a", "2024-03-05T14:07:09"));
        Tool::makeFile(root + "/v3.9.9/backup/backup_2024-03-06_a.xml",
                       backupOf("a", "2024-03-06T14:07:09"));
        Tool::makeFile(root + "/backup/backup_2024-03-04_a.xml",
                       backupOf("a", "2024-03-04T14:07:09"));
        Tool::makeFile(root + "/v4.2.0/settings.xml", "<settings/>");
        QVERIFY(home.mkpath(root + "/v4.3.0/backup"));
        const Tool::Run run = Tool::run({"list", "--json"});
        QCOMPARE(run.exitCode, 0);
        QStringList files;
        for (const QJsonValue &listed : run.array()) {
            files << listed["file"].toString();
        }
        QCOMPARE(files,
                 (QStringList{root + "/v3.9.9/backup/backup_2024-03-06_a.xml",
                              root + "/v4.2.0/backup/backup_2024-03-05_a.xml",
                              root + "/backup/backup_2024-03-04_a.xml"}));
        QCOMPARE(Tool::run({"verify"}).exitCode, 0);
        QVERIFY(QDir(root).removeRecursively());
    }

    void saysThatThereAreNoAutomaticBackups()
    {
        const Tool::Run run = Tool::run({"verify"});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.complaint,
                 QDir::home().filePath(".ZOR/VELTRA4") + ": No such file or directory.\n");
    }

    void looksIntoFoldersOnce()
    {
        Tool::makeFile(path("a/b/c.xml"), backupOf("a", "2024-03-05T14:07:09"));
        QVERIFY(QFile::link("..", path("a/b/circle")));
        QVERIFY(QFile::link("../a", path("a/circle.xml")));
        const QJsonArray listed =
            Tool::run({"list", "--json", path("a"), path("a/"), path("a/b/c.xml")}).array();
        QCOMPARE(listed.size(), 1);
        QCOMPARE(listed.first().toObject()["file"].toString(), path("a/b/c.xml"));
    }

    void complainsOfFoldersThatCannotBeRead()
    {
        const QString good = Tool::makeFile(path("a/a.xml"), backupOf("a", "2024-03-05T14:07:09"));
        Tool::makeFile(path("a/closed/b.xml"), backupOf("a", "2024-03-05T14:07:09"));
        QCOMPARE(chmod(qPrintable(path("a/closed")), 0), 0);
        // Which root has even so; from the next program on it has it no longer.
        const auto giveUpReadingEverything = [] {
            for (const unsigned long power : {1UL * CAP_DAC_OVERRIDE, 1UL * CAP_DAC_READ_SEARCH}) {
                if (geteuid() == 0 && prctl(PR_CAPBSET_DROP, power) != 0) {
                    _exit(99);
                }
            }
        };
        const Tool::Run run = Tool::run({"list", path("a")}, giveUpReadingEverything);
        QCOMPARE(chmod(qPrintable(path("a/closed")), 0700), 0);
        QCOMPARE(run.exitCode, 2);
        QVERIFY(run.output.contains(good));
        QCOMPARE(run.complaint, path("a/closed") + ": This folder cannot be read.\n");
    }

    void complainsOfWhatIsNoFile()
    {
        QCOMPARE(mkfifo(qPrintable(path("a.xml")), 0600), 0);
        QVERIFY(QFile::link("nowhere", path("b.xml")));
        QVERIFY(QFile::link("c.xml", path("c.xml")));
        const Tool::Run run = Tool::run({"list", m_folder->path()});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.complaint,
                 path("a.xml") + ": This is not a regular file.\n" + path("b.xml")
                     + ": No such file or directory.\n" + path("c.xml")
                     + ": Too many levels of symbolic links.\n");
    }

    void livesThroughAThousandBrokenFiles()
    {
        for (int i = 0; i < 1000; ++i) {
            Tool::makeFile(path(QStringLiteral("%1.xml").arg(i)),
                           SampleBackup::document().left(i % 800));
        }
        Tool::makeFile(path("good.xml"), SampleBackup::document());
        const Tool::Run run = Tool::run({"list", m_folder->path()});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.complaint.count('\n'), 1000);
        QCOMPARE(run.output.count('\n'), 1002);
        QCOMPARE(run.output.count("  refused  "), 1000);
        QVERIFY(run.output.section('\n', 1, 1).endsWith("good     " + path("good.xml")));
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

VELTRA4_TEST(TestToolList)
#include "tst_toollist.moc"
