#include "projectversion.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QProcess>
#include <QTest>

class TestToolCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void refusesAWrongCommandLine()
    {
        const auto expectRefusal = [](const QStringList &arguments, const QString &problem) {
            Tool::expectRun(arguments, 2, "", "veltra4-backup: " + problem + '\n');
        };
        expectRefusal({}, "The first argument is verify, list, show, diff or extract; see --help.");
        expectRefusal({"show"}, "show wants PATH....");
        expectRefusal({"show", ""}, "A file has no name.");
        expectRefusal({"diff", "a"}, "diff wants FILE FILE | FOLDER FOLDER.");
        expectRefusal({"extract"}, "extract wants BACKUP [FILE.dat].");
        expectRefusal({"extract", "a", "b", "c"}, "extract wants BACKUP [FILE.dat].");
        expectRefusal({"verify", "--bogus", "a"}, "Unknown option 'bogus'.");
        expectRefusal({"diff", "--ignore", "serials", "a", "b"}, "There is no field \"serials\".");
        expectRefusal({"show", "--ignore", "serial", "a"}, "--ignore does not go with show.");
        expectRefusal({"verify", "--force", "a"}, "--force does not go with verify.");
        expectRefusal({"verify", "--newer-than", "2 days"},
                      "\"2 days\" is no age: 30m, 12h, 2d and 1w are some.");
        expectRefusal({"verify", "--tracking", "x"}, "\"x\" is no version: \"4.2.0\" is one.");
        expectRefusal({"diff", "--controller", "a"}, "diff wants two controllers, or none.");
    }

    void doesNotPassOffWhatItCannotPrint()
    {
        const Tool::Folder folder;
        const QString backup = folder.make("a.xml", SampleBackup::document());
        for (const QStringList &arguments :
             {QStringList{"verify"}, QStringList{"show"}, QStringList{"verify", "--json"}}) {
            QProcess program;
            program.setStandardOutputFile("/dev/full");
            program.start(Tool::programPath(), arguments + QStringList{backup});
            QVERIFY(program.waitForFinished());
            QCOMPARE(program.exitCode(), 2);
            QCOMPARE(program.readAllStandardError(),
                     "veltra4-backup: The output cannot be written.\n");
        }
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

    void eachCommandHasItsHelp()
    {
        const QVector<std::tuple<QString, QString, QString>> commands{
            {"verify [PATH]...", "--newer-than", "--force"},
            {"list [PATH]...", "--controller", "--newer-than"},
            {"show PATH...", "--json", "--controller"},
            {"diff FILE FILE", "--ignore", "--model"},
            {"extract BACKUP [FILE.dat]", "--force", "--ignore"}};
        for (const auto &[command, its, others] : commands) {
            const Tool::Run run = Tool::run({command.section(' ', 0, 0), "--help"});
            QCOMPARE(run.exitCode, 0);
            QVERIFY2(run.output.contains(command), qPrintable(run.output));
            QVERIFY2(run.output.contains(its), qPrintable(run.output));
            QVERIFY2(!run.output.contains(others), qPrintable(run.output));
        }
    }

    void versionIsThatOfTheProject()
    {
        Tool::expectRun({"--version"}, 0, "veltra4-backup " VELTRA4_VERSION "\n");
    }
};

VELTRA4_TEST(TestToolCommandLine)
#include "tst_toolcommandline.moc"
