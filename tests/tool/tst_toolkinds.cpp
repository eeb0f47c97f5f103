#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QTemporaryDir>
#include <QtTest>

using SampleBackup::document;
using SampleBackup::documentWith;

class TestToolKinds : public QObject
{
    Q_OBJECT

private slots:
    void saysWhatAFileProbablyIs_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("kind"); // empty if it is a backup all the same
        const QByteArray noText("\x01\x00\xff", 3);
        const auto row = [](const char *name, const QByteArray &content, const char *kind) {
            QTest::newRow(qPrintable(name + QString(" ") + kind))
                << QString(name) << content << QString(kind);
        };
        row("a.xml", "", "The file is empty.");
        row("a.dat", noText, "These are saved configurations, probably.");
        row("a.dat.bak", noText, "These are saved configurations, probably.");
        row("a.xml", noText, "This is no text: saved configurations perhaps, or something else.");
        row("a.xml", "Dear Sir", "This is some other text.");
        row("a.xml", "<html/>",
            "This is another kind of document, whose outermost element is html.");
        row("a.xml", document().left(60), "This looks like a backup that was cut short.");
        row("a.xml", document().chopped(3), "This looks like a backup that was cut short.");
        row("a.xml", documentWith("<domain>", "<a/><domain>"), "");
    }

    void saysWhatAFileProbablyIs()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, content);
        QFETCH(const QString, kind);
        const QTemporaryDir folder;
        const Tool::Run run = Tool::run({"verify", Tool::makeFile(folder.filePath(name), content)});
        QCOMPARE(run.exitCode, 1);
        if (kind.isEmpty()) {
            QVERIFY2(!run.complaint.contains("This is"), qPrintable(run.complaint));
            QVERIFY2(!run.complaint.contains("This looks"), qPrintable(run.complaint));
        } else {
            QVERIFY2(run.complaint.endsWith(". " + kind + "\n"), qPrintable(run.complaint));
        }
        QCOMPARE(run.complaint.count('\n'), 1);
    }
};

VELTRA4_TEST(TestToolKinds)
#include "tst_toolkinds.moc"
