#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QProcess>
#include <QTest>

namespace {

constexpr char manual[] = VELTRA4_PACKAGING_PATH "/veltra4-backup.1.in";
constexpr char completion[] = VELTRA4_PACKAGING_PATH "/veltra4-backup.bash";

// What bash offers after the given words, the last of which is being typed.
QStringList completionsOf(const QStringList &words, const QString &folder)
{
    const QString script = QStringLiteral("source \"$1\"; shift; COMP_WORDS=(\"$@\"); "
                                          "COMP_CWORD=$(($# - 1)); _veltra4_backup; "
                                          "printf '%s\\n' \"${COMPREPLY[@]}\"");
    QProcess bash;
    bash.setWorkingDirectory(folder);
    bash.start("bash", QStringList{"-c", script, "bash", completion, "veltra4-backup"} + words);
    bash.waitForFinished(-1);
    const QString complaint = QString::fromUtf8(bash.readAllStandardError());
    if (!complaint.isEmpty()) {
        return {complaint};
    }
    QStringList offered =
        QString::fromUtf8(bash.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    offered.sort();
    return offered;
}

QStringList optionsIn(const QString &text)
{
    static const QRegularExpression pattern("(?<![\\w-])--[a-z][a-z-]*");
    QStringList options;
    QRegularExpressionMatchIterator match = pattern.globalMatch(text);
    while (match.hasNext()) {
        options << match.next().captured();
    }
    options.removeDuplicates();
    options.sort();
    return options;
}

} // namespace

/// The manual page and the completion, which nobody compiles.
class TestToolManual : public QObject
{
    Q_OBJECT

private slots:
    void thePageNamesAllOptionsAndNoOthers()
    {
        QFile page(manual);
        QVERIFY(page.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(page.readAll()).remove('\\');
        QCOMPARE(optionsIn(text), optionsIn(Tool::run({"--help"}).output));
        for (const char *command : {"verify", "list", "show", "diff", "extract"}) {
            QVERIFY2(text.contains(QString("\n.B veltra4-backup %1\n").arg(command)), command);
            QVERIFY2(text.contains(QString("\n.TP\n.B %1\n").arg(command)), command);
        }
    }

    void thePageIsWellFormed()
    {
        QProcess groff;
        groff.start("groff", {"-man", "-ww", "-z", manual});
        if (!groff.waitForStarted()) {
            QSKIP("there is no groff");
        }
        QVERIFY(groff.waitForFinished(-1));
        QCOMPARE(groff.readAllStandardError(), QByteArray());
        QCOMPARE(groff.exitCode(), 0);
    }

    void theOptionsOfACommandAreCompleted()
    {
        for (const char *command : {"verify", "list", "show", "diff", "extract"}) {
            const QString help = Tool::run({command, "--help"}).output;
            const QString options = help.section("Options:", 1).section("Exit status", 0, 0);
            QCOMPARE(completionsOf({command, "--"}, {}), optionsIn(options));
        }
    }

    void commandsAndFieldsAreCompleted()
    {
        QCOMPARE(completionsOf({""}, {}),
                 (QStringList{"diff", "extract", "list", "show", "verify"}));
        QCOMPARE(completionsOf({"--json", "v"}, {}), QStringList{"verify"});
        QCOMPARE(completionsOf({"diff", "--ignore", "n"}, {}),
                 (QStringList{"name", "nameServer", "net", "ntpServer"}));
    }

    void filesAreCompleted()
    {
        const Tool::Folder folder;
        for (const char *name : {"a b.xml", "b.XML", "c.dat", "d.txt", "e/f.xml"}) {
            folder.make(name, "");
        }
        QCOMPARE(completionsOf({"show", ""}, folder.path()),
                 (QStringList{"a b.xml", "b.XML", "e"}));
        QCOMPARE(completionsOf({"extract", "a b.xml", ""}, folder.path()),
                 (QStringList{"a b.xml", "b.XML", "c.dat", "e"}));
        QCOMPARE(completionsOf({"list", "--controller", ""}, folder.path()), QStringList());
    }
};

VELTRA4_TEST(TestToolManual)
#include "tst_toolmanual.moc"
