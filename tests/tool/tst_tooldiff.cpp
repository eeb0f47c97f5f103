#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QTest>

using SampleBackup::document;
using SampleBackup::documentWith;
using Tool::backupOf;
using Tool::expectRun;

class TestToolDiff : public QObject
{
    Q_OBJECT

private:
    const Tool::Folder m_folder;
    const QString m_sample = m_folder.make("sample.xml", document());

    QString changed(const QByteArray &before, const QByteArray &after) const
    {
        return m_folder.make("changed.xml", documentWith(before, after));
    }

private slots:
    void findsNoDifferenceInACopy()
    {
        const QString copy = m_folder.make("copy.xml", document());
        expectRun({"diff", m_sample, copy}, 0, m_sample + " and " + copy + " say the same.\n");
        const QJsonObject expected{{"command", "diff"},
                                   {"files", QJsonArray{m_sample, copy}},
                                   {"same", true},
                                   {"differences", QJsonArray()}};
        QCOMPARE(Tool::run({"diff", "--json", m_sample, copy}).object(), expected);
    }

    void findsTheDifference()
    {
        const QStringList files{m_sample, changed("slave-b", "b")};
        expectRun(QStringList{"diff"} + files, 1,
                  "Cascade (ZORBackupData/slaves)\n"
                  "  - slave-a, slave-b\n"
                  "  + slave-a, b\n");
        const QJsonObject difference{{"field", "ZORBackupData/slaves"},
                                     {"first", QJsonArray{"slave-a", "slave-b"}},
                                     {"second", QJsonArray{"slave-a", "b"}}};
        const QJsonObject expected{{"command", "diff"},
                                   {"files", QJsonArray::fromStringList(files)},
                                   {"same", false},
                                   {"differences", QJsonArray{difference}}};
        const Tool::Run forPrograms = Tool::run(QStringList{"diff", "--json"} + files);
        QCOMPARE(forPrograms.exitCode, 1);
        QCOMPARE(forPrograms.object(), expected);
    }

    void ignoresFields()
    {
        const QString other = m_folder.make(
            "other.xml", documentWith("example.com", "example.org").replace(":09", ":10"));
        const QStringList files{m_sample, other};
        const QStringList ignoringOne = QStringList{"diff", "--ignore", "creationDate"} + files;
        expectRun(ignoringOne, 1,
                  "Domain (ZORBackupData/domain)\n  - example.com\n  + example.org\n");
        QCOMPARE(Tool::run(ignoringOne + QStringList{"--ignore", "ZORBackupData/domain"}).exitCode,
                 0);
    }

    void comparesNoBrokenBackup()
    {
        const QString broken = changed(">example.com<", "><");
        for (const QStringList &files :
             {QStringList{m_sample, broken}, QStringList{broken, m_sample}}) {
            const Tool::Run run = Tool::run(QStringList{"diff"} + files);
            QCOMPARE(run.exitCode, 2);
            QCOMPARE(run.output, "");
            QVERIFY(run.complaint.startsWith(broken + ": line 21"));
            const QJsonObject comparison =
                Tool::run(QStringList{"diff", "--json"} + files).object();
            QVERIFY(!comparison.contains("same"));
            QCOMPARE(comparison["problems"].toArray().size(), 1);
            QCOMPARE(comparison["problems"][0]["file"].toString(), broken);
        }
    }

    void saysThatTheDataDiffer()
    {
        const QStringList lines =
            Tool::run({"diff", m_sample, changed("AAH+", "AAH/")}).output.split('\n');
        QCOMPARE(lines.size(), 5);
        QCOMPARE(lines.at(0), "Configuration data (ZORBackupData/configData)");
        QVERIFY(lines.at(1).startsWith("  - 19 bytes, SHA-256 "));
        QVERIFY(lines.at(2).startsWith("  + 19 bytes, SHA-256 "));
        QVERIFY(lines.at(1).mid(4) != lines.at(2).mid(4));
        QVERIFY(lines.at(3).contains("no telling which configurations differ"));
    }

    void comparesTheNewestInTwoFolders()
    {
        const Tool::Folder folder;
        const QString before = folder.path("before");
        const QString after = folder.path("after");
        folder.make("before/1.xml", backupOf("same", "2024-03-05T14:00:00"));
        folder.make("before/2.xml", backupOf("changed", "2024-03-05T14:00:00"));
        folder.make("before/3.xml", backupOf("gone", "2024-03-05T14:00:00"));
        folder.make("after/1.xml", backupOf("same", "2024-03-06T14:00:00"));
        folder.make("after/2.xml", backupOf("changed", "2024-03-06T14:00:00"));
        folder.make("after/3.xml",
                    backupOf("changed", "2024-03-07T14:00:00").replace("slave-b", "b"));
        folder.make("after/4.xml", backupOf("new", "2024-03-05T14:00:00"));
        expectRun({"diff", before, after}, 1,
                  "changed: changed between 2024-03-05 14:00:00 and 2024-03-07 14:00:00\n"
                  "Cascade (ZORBackupData/slaves)\n"
                  "  - slave-a, slave-b\n"
                  "  + slave-a, b\n"
                  "gone: only in "
                      + before + "\nnew: only in " + after
                      + "\nsame: unchanged from 2024-03-05 14:00:00 to 2024-03-06 14:00:00\n");
        const QJsonObject comparison = Tool::run({"diff", "--json", before, after}).object();
        QCOMPARE(comparison["same"], QJsonValue(false));
        const QJsonArray controllers = comparison["controllers"].toArray();
        QCOMPARE(controllers.size(), 4);
        QCOMPARE(controllers[0]["differences"].toArray().size(), 1);
        QCOMPARE(controllers[1]["differences"][0]["onlyIn"].toString(), before);
        QCOMPARE(controllers[3]["same"], QJsonValue(true));
        QCOMPARE(Tool::run({"diff", after, after}).exitCode, 0);
    }

    void comparesNoBrokenFolder()
    {
        const Tool::Folder folder;
        folder.make("a/a.xml", document());
        const QString broken = folder.make("b/b.xml", "<ZOR/>");
        const QStringList folders{folder.path("a"), folder.path("b")};
        expectRun(QStringList{"diff"} + folders, 2, "tracker-7: only in " + folders.at(0) + '\n',
                  broken + ": The document is empty.\n");
        const QJsonObject told = Tool::run(QStringList{"diff", "--json"} + folders).object();
        QCOMPARE(told["problems"][0]["file"].toString(), broken);
    }

    void comparesTheNewestOfTwoControllers()
    {
        const Tool::Folder folder;
        folder.make("1.xml", backupOf("a", "2024-03-05T14:00:00"));
        const QString a = folder.make("2.xml", backupOf("a", "2024-03-06T14:00:00"));
        const QString b = folder.make("3.xml", backupOf("b", "2024-03-06T14:00:00"));
        const QString empty = folder.make("4.xml", "<ZOR/>") + ": The document is empty.\n";
        const QStringList command{"diff", "--controller", "a", folder.path(), "--controller"};
        expectRun(command + QStringList{"b"}, 1,
                  "- " + a + "\n+ " + b + "\nHost name (ZORControllerInfo/name)\n  - a\n  + b\n",
                  empty);
        expectRun(command + QStringList{"b", "--ignore", "name"}, 0,
                  a + " and " + b + " say the same.\n", empty);
        expectRun(command + QStringList{"c"}, 2, "",
                  empty + "veltra4-backup: There is no good backup of c.\n");
    }

    void wantsTwoOfAKind()
    {
        expectRun({"diff", m_sample, m_folder.path()}, 2, "",
                  "veltra4-backup: diff wants two files or two folders.\n");
    }
};

VELTRA4_TEST(TestToolDiff)
#include "tst_tooldiff.moc"
