#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QTest>

#include <unistd.h>

class TestToolTerminal : public QObject
{
    Q_OBJECT

private:
    const Tool::Folder m_folder;
    const QString m_first = m_folder.make("a.xml", SampleBackup::document());
    const QString m_second = m_folder.make("b.xml", SampleBackup::documentWith("/24", "/25"));

private slots:
    void initTestCase()
    {
        qputenv("TERM", "xterm");
        qunsetenv("NO_COLOR");
    }

    void coloursVerdictsAndDifferences()
    {
        const QString broken = m_folder.make("broken", "<ZOR/>");
        const QString list = Tool::runInTerminal({"list", m_first, broken});
        QVERIFY2(list.contains("  \x1b[32mgood   \x1b[m  " + m_first), qPrintable(list));
        QVERIFY2(list.contains("  \x1b[31mrefused\x1b[m  " + broken), qPrintable(list));
        const QString diff = Tool::runInTerminal({"diff", m_first, m_second});
        QVERIFY2(diff.contains("\x1b[31m  - 192.168.0.7/24"), qPrintable(diff));
        QVERIFY2(diff.contains("\x1b[32m  + 192.168.0.7/25"), qPrintable(diff));
    }

    void takesNoColour()
    {
        for (const auto &[variable, value] : {std::pair("NO_COLOR", "1"), {"TERM", "dumb"}}) {
            const QByteArray before = qgetenv(variable);
            qputenv(variable, value);
            const QString shown = Tool::runInTerminal({"diff", m_first, m_second});
            qputenv(variable, before);
            QVERIFY2(shown.contains("  - 192.168.0.7/24"), qPrintable(shown));
            QVERIFY2(!shown.contains("\x1b["), qPrintable(shown));
        }
    }

    void showsHowFarItIs()
    {
        const QString shown = Tool::runInTerminal({"verify", m_first, m_second});
        QVERIFY2(shown.contains("\r0 of 2"), qPrintable(shown));
        const QString result = shown.section("\r\x1b[K", 1); // behind the line that was taken away
        QVERIFY2(result.startsWith(m_first + ": A restore would"), qPrintable(shown));
    }

    void noticesAClosedPipe()
    {
        const auto writeToNobody = [] {
            int ends[2];
            if (pipe(ends) != 0 || dup2(ends[1], STDOUT_FILENO) < 0) {
                _exit(99);
            }
            close(ends[0]);
            close(ends[1]);
        };
        const Tool::Run run = Tool::run({"list", m_first}, writeToNobody);
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.complaint, QString("veltra4-backup: The output cannot be written.\n"));
    }
};

VELTRA4_TEST(TestToolTerminal)
#include "tst_toolterminal.moc"
