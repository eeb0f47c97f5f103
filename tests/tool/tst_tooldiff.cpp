#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QTemporaryDir>
#include <QtTest>

using SampleBackup::document;
using SampleBackup::documentWith;

class TestToolDiff : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        m_written = m_folder.filePath("written.xml");
        QVERIFY(backup.writeToFile(m_written));
    }

    void findsNoDifferenceInACopy()
    {
        const Tool::Run run = Tool::run({"diff", file(document()), file(document())});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.output.endsWith(" say the same.\n"), qPrintable(run.output));
        QCOMPARE(run.output.count('\n'), 1);
        QCOMPARE(run.complaint, QString());
        const QJsonObject comparison = Tool::run({"diff", "--json", m_written, m_written}).object();
        QCOMPARE(comparison["same"], QJsonValue(true));
        QCOMPARE(comparison["differences"], QJsonValue(QJsonArray()));
    }

    void findsTheDifference_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QString>("field");
        const auto row = [](const char *before, const char *after, const char *field) {
            QTest::newRow(field) << QByteArray(before) << QByteArray(after) << QString(field);
        };
        row("tracker-7", "tracker-8", "ZORControllerInfo/name");
        row("00001234", "1234", "ZORControllerInfo/serial");
        row("v4.2.1", "v4.2.2", "ZORControllerInfo/ptVersion");
        row("v3.5", "v3.5.0", "ZORControllerInfo/ctVersion");
        row("Model 5", "model 5", "ZORControllerInfo/systemModel");
        row("14:07:09", "14:07:10", "ZORBackupInfo/creationDate");
        row("/24", "/25", "ZORBackupData/net");
        row("example.com", "example.org", "ZORBackupData/domain");
        row("192.168.0.2", "192.168.0.9", "ZORBackupData/nameServer");
        row("192.168.0.3", "192.168.0.9", "ZORBackupData/ntpServer");
        row("<slave>slave-b</slave>", "", "ZORBackupData/slaves");
        row("config2024", "config2025", "ZORBackupData/activeConfig");
        row("AAH+", "AAH/", "ZORBackupData/configData");
    }

    void findsTheDifference()
    {
        QFETCH(const QByteArray, before);
        QFETCH(const QByteArray, after);
        const Tool::Run run =
            Tool::run({"diff", "--json", file(document()), file(documentWith(before, after))});
        QCOMPARE(run.exitCode, 1);
        const QJsonObject comparison = run.object();
        QCOMPARE(comparison["same"], QJsonValue(false));
        const QJsonArray differences = comparison["differences"].toArray();
        QCOMPARE(differences.size(), 1);
        const QJsonObject difference = differences[0].toObject();
        QTEST(difference["field"].toString(), "field");
        QVERIFY(difference["first"] != difference["second"]);
    }

    void printsTheDifferenceForPeople()
    {
        const Tool::Run run =
            Tool::run({"diff", file(document()), file(documentWith("slave-b", "b"))});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.output,
                 QStringLiteral("Cascade (ZORBackupData/slaves)\n"
                                "  - slave-a, slave-b\n"
                                "  + slave-a, b\n"));
    }

    void ignoresFields()
    {
        const QString first = file(document());
        QByteArray changed = documentWith("14:07:09", "14:07:10");
        changed.replace("example.com", "example.org");
        const QString second = file(changed);
        QCOMPARE(
            Tool::run({"diff", "--json", first, second}).object()["differences"].toArray().size(),
            2);
        QCOMPARE(Tool::run({"diff", "--ignore", "creationDate", first, second}).exitCode, 1);
        QCOMPARE(Tool::run({"diff", "--ignore", "creationDate", "--ignore", "ZORBackupData/domain",
                            first, second})
                     .exitCode,
                 0);
    }

    void comparesNoBrokenBackup()
    {
        const QString broken = file(documentWith(">example.com<", "><"));
        for (const QStringList &files :
             {QStringList{m_written, broken}, QStringList{broken, m_written}}) {
            const Tool::Run run = Tool::run(QStringList{"diff"} + files);
            QCOMPARE(run.exitCode, 2);
            QCOMPARE(run.output, QString());
            QVERIFY(run.complaint.startsWith(broken + ": line 21"));
            const QJsonObject comparison =
                Tool::run(QStringList{"diff", "--json"} + files).object();
            QVERIFY(!comparison.contains("same"));
            QCOMPARE(comparison["problems"].toArray().size(), 1);
            QCOMPARE(comparison["problems"].toArray()[0].toObject()["file"].toString(), broken);
        }
        QCOMPARE(Tool::run({"diff", m_written, "/nosuch.xml"}).exitCode, 2);
    }

    void saysThatTheDataDiffer()
    {
        const Tool::Run run =
            Tool::run({"diff", file(document()), file(documentWith("AAH+", "AAH/"))});
        const QStringList lines = run.output.split('\n');
        QCOMPARE(lines.size(), 5);
        QCOMPARE(lines.at(0), QString("Configuration data (ZORBackupData/configData)"));
        QVERIFY(lines.at(1).startsWith("  - 19 bytes, SHA-256 "));
        QVERIFY(lines.at(2).startsWith("  + 19 bytes, SHA-256 "));
        QVERIFY(lines.at(1).mid(4) != lines.at(2).mid(4));
        QVERIFY(lines.at(3).contains("no telling which configurations differ"));
    }

    void comparesTheNewestInTwoFolders()
    {
        using Tool::backupOf;
        const QTemporaryDir folder;
        const QString before = folder.filePath("before");
        const QString after = folder.filePath("after");
        Tool::makeFile(before + "/1.xml", backupOf("same", "2024-03-05T14:00:00"));
        Tool::makeFile(before + "/2.xml", backupOf("changed", "2024-03-05T14:00:00"));
        Tool::makeFile(before + "/3.xml", backupOf("gone", "2024-03-05T14:00:00"));
        Tool::makeFile(after + "/1.xml", backupOf("same", "2024-03-06T14:00:00"));
        Tool::makeFile(after + "/2.xml", backupOf("changed", "2024-03-06T14:00:00"));
        Tool::makeFile(after + "/3.xml",
                       backupOf("changed", "2024-03-07T14:00:00").replace("slave-b", "b"));
        Tool::makeFile(after + "/4.xml", backupOf("new", "2024-03-05T14:00:00"));

        const Tool::Run run = Tool::run({"diff", before, after});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.complaint, QString());
        QCOMPARE(run.output,
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
        QCOMPARE(controllers[0].toObject()["differences"].toArray().size(), 1);
        QCOMPARE(controllers[3].toObject()["same"], QJsonValue(true));
    }

    void findsNothingNewInACopyOfAFolder()
    {
        const QTemporaryDir folder;
        Tool::makeFile(folder.filePath("a.xml"), document());
        QCOMPARE(Tool::run({"diff", folder.path(), folder.path()}).exitCode, 0);
    }

    void comparesNoBrokenFolder()
    {
        const QTemporaryDir folder;
        Tool::makeFile(folder.filePath("a/a.xml"), document());
        const QString broken = Tool::makeFile(folder.filePath("b/b.xml"), "<ZOR/>");
        const Tool::Run run = Tool::run({"diff", folder.filePath("a"), folder.filePath("b")});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.complaint, broken + ": The document is empty.\n");
    }

    void comparesTheNewestOfTwoControllers()
    {
        const QTemporaryDir folder;
        Tool::makeFile(folder.filePath("1.xml"), Tool::backupOf("a", "2024-03-05T14:00:00"));
        const QString a =
            Tool::makeFile(folder.filePath("2.xml"), Tool::backupOf("a", "2024-03-06T14:00:00"));
        const QString b =
            Tool::makeFile(folder.filePath("3.xml"), Tool::backupOf("b", "2024-03-06T14:00:00"));
        const QString broken = Tool::makeFile(folder.filePath("4.xml"), "<ZOR/>");
        const QStringList command{"diff", "--controller", "a", "--controller", "b", folder.path()};
        const Tool::Run run = Tool::run(command);
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.output,
                 "- " + a + "\n+ " + b + "\nHost name (ZORControllerInfo/name)\n  - a\n  + b\n");
        QCOMPARE(run.complaint, broken + ": The document is empty.\n");
        QCOMPARE(Tool::run(command + QStringList{"--ignore", "name"}).exitCode, 0);

        const Tool::Run missing =
            Tool::run({"diff", "--controller", "a", "--controller", "c", folder.path()});
        QCOMPARE(missing.exitCode, 2);
        QVERIFY2(missing.complaint.endsWith("\nveltra4-backup: There is no good backup of c.\n"),
                 qPrintable(missing.complaint));
    }

    void wantsTwoOfAKind()
    {
        const Tool::Run run = Tool::run({"diff", m_written, m_folder.path()});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.complaint, QString("veltra4-backup: diff wants two files or two folders.\n"));
    }

private:
    QString file(const QByteArray &content) const
    {
        return SampleBackup::makeFile(m_folder.path(), content);
    }

    const QTemporaryDir m_folder;
    QString m_written; // by the plug-in's own writer
};

VELTRA4_TEST(TestToolDiff)
#include "tst_tooldiff.moc"
