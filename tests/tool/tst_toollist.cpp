#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QTest>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

using Tool::backupOf;
using Tool::expectRun;

class TestToolList : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Tool::Folder> m_folder;

    QString path(const QString &name) const { return m_folder->path(name); }

    // Of a controller, at some time.
    QString makeBackup(const QString &name, const QByteArray &controller) const
    {
        return m_folder->make(name, backupOf(controller, "2024-11-05T14:07:09"));
    }

    // The files that are listed for programs, in their order.
    static QStringList listed(const QStringList &arguments)
    {
        QStringList files;
        for (const QJsonValue &one : Tool::run(QStringList{"list", "--json"} + arguments).array()) {
            files << one["file"].toString();
        }
        return files;
    }

private slots:
    void init() { m_folder = std::make_unique<Tool::Folder>(); }

    void printsATable()
    {
        m_folder->make("a/old.xml", backupOf("tracker-7", "2024-03-05T14:07:09"));
        makeBackup("a/new.xml", "lab");
        m_folder->make("a/broken.xml", "<ZOR/>");
        m_folder->make(
            "a/nothing.XML",
            backupOf("lab", "2023-01-01T00:00:00").replace("AAH+/yBjb25maWd1cmF0aW9ucw==", ""));
        m_folder->make("a/notes.txt", "not looked at");
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
        const QString complaints =
            "%1/nothing.XML: It holds no configurations: a restore would only bring back the "
            "settings and the cascade.\n"
            "%1/broken.xml: The document is empty.\n"
            "/nosuch.xml: No such file or directory.\n";
        expectRun({"list", path("a"), "/nosuch.xml"}, 2, table.arg(path("a")),
                  complaints.arg(path("a")));
        QCOMPARE(Tool::run({"list", path("a")}).exitCode, 1);
    }

    void printsOneArrayAndOneControllerOnly()
    {
        makeBackup("a.xml", "lab");
        const QString file = makeBackup("b.xml", "cell");
        const Tool::Run run =
            Tool::run({"list", "--json", "--controller", "cell", m_folder->path()});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.array().size(), 1);
        const QJsonValue listed = run.array().first();
        QCOMPARE(listed["file"].toString(), file);
        QCOMPARE(listed["verdict"].toString(), "good");
        QCOMPARE(listed["backup"]["ZORControllerInfo"]["name"].toString(), "cell");
        QCOMPARE(Tool::run({"list", "--json", file}).array().size(), 1); // also of one file
    }

    void keepsToItsColumns()
    {
        const QString file = m_folder->make(
            "a.xml",
            backupOf("a\nb", "2024-11-05T14:07:09").replace("Model 5", QByteArray(900, 'm')));
        const QString row = Tool::run({"list", file}).output.section('\n', 1, 1);
        QVERIFY2(row.startsWith("2024-11-05 14:07:09  a\\u{a}b     00001234  " + QString(29, 'm')
                                + "...  v4.2.1"),
                 qPrintable(row));
    }

    void looksWhereAutomaticBackupsGo()
    {
        const QDir home = QDir::home();
        const QString root = home.filePath(".ZOR/VELTRA4");
        expectRun({"verify"}, 2, "", root + ": No such file or directory.\n");
        const auto make = [&](const QString &folder, const QByteArray &date) {
            return Tool::makeFile(root + folder + "/backup_" + date + "_a.xml",
                                  backupOf("a", date + "T14:07:09"));
        };
        const QStringList newestFirst{make("/v3.9.9/backup", "2024-03-06"),
                                      make("/v4.2.0/backup", "2024-03-05"),
                                      make("/backup", "2024-03-04")};
        Tool::makeFile(root + "/v4.2.0/settings.xml", "<settings/>");
        QVERIFY(home.mkpath(root + "/v4.3.0/backup"));
        QCOMPARE(listed({}), newestFirst);
        QCOMPARE(Tool::run({"verify"}).exitCode, 0);
        QVERIFY(QDir(root).removeRecursively());
    }

    void looksIntoFoldersOnce()
    {
        const QString file = makeBackup("a/b/c.xml", "a");
        QVERIFY(QFile::link("..", path("a/b/circle")));
        QVERIFY(QFile::link("../a", path("a/circle.xml")));
        QCOMPARE(listed({path("a"), path("a/"), file}), QStringList(file));
    }

    void complainsOfFoldersThatCannotBeRead()
    {
        const QString good = makeBackup("a/a.xml", "a");
        makeBackup("a/closed/b.xml", "a");
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
        QCOMPARE(Tool::run({"list", m_folder->path()}).complaint,
                 path("a.xml") + ": This is not a regular file.\n" + path("b.xml")
                     + ": No such file or directory.\n" + path("c.xml")
                     + ": Too many levels of symbolic links.\n");
    }
};

VELTRA4_TEST(TestToolList)
#include "tst_toollist.moc"
