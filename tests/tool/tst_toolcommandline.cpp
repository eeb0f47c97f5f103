#include "projectversion.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

class TestToolCommandLine : public QObject
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

    void refusesAWrongCommandLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("problem");
        const auto row = [](const QStringList &arguments, const char *problem) {
            QTest::newRow(problem) << arguments << QString(problem);
        };
        row({}, "The first argument is verify, list, show, diff or extract; see --help.");
        row({"show"}, "show wants PATH....");
        row({"show", ""}, "A file has no name.");
        row({"diff", "a"}, "diff wants FILE FILE | FOLDER FOLDER.");
        row({"extract"}, "extract wants BACKUP [FILE.dat].");
        row({"extract", "a", "b", "c"}, "extract wants BACKUP [FILE.dat].");
        row({"verify", "--bogus", "a"}, "Unknown option 'bogus'.");
        row({"diff", "--ignore", "serials", "a", "b"}, "There is no field \"serials\".");
        row({"show", "--ignore", "serial", "a"}, "--ignore does not go with show.");
        row({"verify", "--force", "a"}, "--force does not go with verify.");
        row({"verify", "--newer-than", "2 days"},
            "\"2 days\" is no age: 30m, 12h, 2d and 1w are some.");
        row({"verify", "--tracking", "x"}, "\"x\" is no version: \"4.2.0\" is one.");
        row({"diff", "--controller", "a"}, "diff wants two controllers, or none.");
    }

    void refusesAWrongCommandLine()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, problem);
        const Tool::Run run = Tool::run(arguments);
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.output, QString());
        QCOMPARE(run.complaint, "veltra4-backup: " + problem + "\n");
    }

    void doesNotPassOffWhatItCannotPrint_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("verify") << QStringList{"verify"};
        QTest::newRow("show") << QStringList{"show"};
        QTest::newRow("JSON") << QStringList{"verify", "--json"};
    }

    void doesNotPassOffWhatItCannotPrint()
    {
        QFETCH(const QStringList, arguments);
        QProcess program;
        program.setStandardOutputFile("/dev/full");
        program.start(Tool::programPath(), arguments + QStringList{m_written});
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 2);
        QCOMPARE(program.readAllStandardError(),
                 QByteArray("veltra4-backup: The output cannot be written.\n"));
    }

    void helpNamesEverything()
    {
        const Tool::Run run = Tool::run({"--help"});
        QCOMPARE(run.exitCode, 0);
        for (const char *word : {"verify", "list", "show", "diff", "extract", "--json", "--ignore",
                                 "--force", "--controller", "--newer-than", "--model", "--tracking",
                                 "--firmware", "--version", "Exit status"}) {
            QVERIFY2(run.output.contains(word), word);
        }
    }

    void eachCommandHasItsHelp_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("its");
        QTest::addColumn<QString>("others");
        QTest::newRow("verify") << "verify [PATH]..."
                                << "--newer-than"
                                << "--force";
        QTest::newRow("list") << "list [PATH]..."
                              << "--controller"
                              << "--newer-than";
        QTest::newRow("show") << "show PATH..."
                              << "--json"
                              << "--controller";
        QTest::newRow("diff") << "diff FILE FILE"
                              << "--ignore"
                              << "--model";
        QTest::newRow("extract") << "extract BACKUP [FILE.dat]"
                                 << "--force"
                                 << "--ignore";
    }

    void eachCommandHasItsHelp()
    {
        QFETCH(const QString, command);
        QFETCH(const QString, its);
        QFETCH(const QString, others);
        const Tool::Run run = Tool::run({QTest::currentDataTag(), "--help"});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.output.contains(command), qPrintable(run.output));
        QVERIFY2(run.output.contains(its), qPrintable(run.output));
        QVERIFY2(!run.output.contains(others), qPrintable(run.output));
    }

    void versionIsThatOfTheProject()
    {
        const Tool::Run run = Tool::run({"--version"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.output, QStringLiteral("veltra4-backup " VELTRA4_VERSION "\n"));
    }

private:
    const QTemporaryDir m_folder;
    QString m_written; // by the plug-in's own writer
};

VELTRA4_TEST(TestToolCommandLine)
#include "tst_toolcommandline.moc"
