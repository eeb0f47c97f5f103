#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QtTest>

using SampleBackup::document;
using SampleBackup::documentWith;

class TestToolKinds : public QObject
{
    Q_OBJECT

private slots:
    void saysWhatAFileProbablyIs()
    {
        const QByteArray noText("\x01\x00\xff", 3);
        const QString saved = " These are saved configurations, probably.";
        const QString cut = " This looks like a backup that was cut short.";
        const QVector<std::tuple<QString, QByteArray, QString>> kinds{
            {"a.xml", "", " The file is empty."},
            {"a.dat", noText, saved},
            {"a.dat.bak", noText, saved},
            {"a.xml", noText, " This is no text: saved configurations perhaps, or something else."},
            {"a.xml", "Dear Sir", " This is some other text."},
            {"a.xml", "<html/>",
             " This is another kind of document, whose outermost element is html."},
            {"a.xml", document().left(60), cut},
            {"a.xml", document().chopped(3), cut},
            {"a.xml", documentWith("<domain>", "<a/><domain>"), ""}};
        for (const auto &[name, content, kind] : kinds) {
            const Tool::Folder folder;
            const Tool::Run run = Tool::run({"verify", folder.make(name, content)});
            QCOMPARE(run.exitCode, 1);
            QVERIFY2(run.complaint.endsWith("." + kind + '\n'), qPrintable(run.complaint));
            QCOMPARE(run.complaint.count('\n'), 1);
            QCOMPARE(run.complaint.contains(". This "), kind.startsWith(" This "));
        }
    }
};

VELTRA4_TEST(TestToolKinds)
#include "tst_toolkinds.moc"
