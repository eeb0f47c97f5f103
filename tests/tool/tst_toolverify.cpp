#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QTemporaryDir>
#include <QtTest>

using SampleBackup::document;
using SampleBackup::documentWith;

namespace {

// What a document that the restore refuses is refused for.
struct Broken
{
    QByteArray document;
    QString stage;
    QString field;
    QString text; // how the reason begins
};

} // namespace

Q_DECLARE_METATYPE(Broken)

class TestToolVerify : public QObject
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

    void acceptsWhatTheWriterWrites()
    {
        const Tool::Run run = Tool::run({"verify", m_written});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(
            run.output,
            m_written + ": A restore would accept this backup.\n" + m_written
                + ": It fits the model \"Model 5\" with tracking software v4.2.1 or newer and, if "
                  "it is an embedded controller, firmware v3.5 or newer.\n"
                  "Whether the configuration data inside are whole, only a controller can tell.\n");
        QCOMPARE(run.complaint, QString());

        const QJsonObject expected{{"command", "verify"},
                                   {"file", m_written},
                                   {"accepted", true},
                                   {"warnings", QJsonArray()},
                                   {"fits",
                                    QJsonObject{{"systemModel", "Model 5"},
                                                {"ptVersion", "v4.2.1"},
                                                {"ctVersion", "v3.5"}}},
                                   {"misfits", QJsonArray()}};
        const Tool::Run forPrograms = Tool::run({"verify", "--json", m_written});
        QCOMPARE(forPrograms.exitCode, 0);
        QCOMPARE(forPrograms.object(), expected);
        QCOMPARE(forPrograms.complaint, QString());
    }

    void warnsOfABackupWithoutConfigurations()
    {
        const QString path = file(documentWith("AAH+/yBjb25maWd1cmF0aW9ucw==", ""));
        const Tool::Run run = Tool::run({"verify", path});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.complaint.startsWith(path + ": It holds no configurations"),
                 qPrintable(run.complaint));
        QCOMPARE(Tool::run({"verify", "--json", path}).object()["warnings"].toArray().size(), 1);
    }

    void refusesWhatARestoreRefuses_data()
    {
        QTest::addColumn<Broken>("broken");
        const auto row = [](const char *name, const Broken &broken) {
            QTest::newRow(name) << broken;
        };

        row("a document type declaration",
            {documentWith("<ZOR>", "<!DOCTYPE ZOR><ZOR>"), "guard", "",
             "The file is larger than 512"});
        row("two million elements",
            {"<ZOR>" + QByteArray("<a/>").repeated(2000000) + "</ZOR>", "guard", "",
             "The file is"});

        row("nothing", {"", "schema", "", "Premature end of document."});
        row("a file of configurations", {"\x01\x02 configurations", "schema", "", ""});
        row("half a document",
            {document().left(700), "schema", "ZORBackupData/slaves", "Premature end"});
        row("another document", {"<html><body/></html>", "schema", "", "No definition"});
        row("another file type",
            {documentWith(">ZORBackup<", ">a<"), "schema", "ZORFileInfo/filetype",
             "Content of element filetype does not match"});
        row("another backup type",
            {documentWith(">XQUFull<", ">a<"), "schema", "ZORBackupInfo/type",
             "Content of element type does not match"});
        row("no date",
            {documentWith("2024-03-05T14:07:09", "yesterday"), "schema",
             "ZORBackupInfo/creationDate",
             "Content of element creationDate does not match its type definition: yesterday is not "
             "valid according to xs:dateTime."});
        row("data that is not base64",
            {documentWith("AAH+", "A=H+"), "schema", "ZORBackupData/configData",
             "Content of element configData"});
        row("a section that is missing",
            {documentWith("<ZORFileInfo>\n\t\t<filetype>ZORBackup</filetype>\n\t\t"
                          "<version>v1.0.0</version>\n\t</ZORFileInfo>",
                          ""),
             "schema", "ZORFileInfo",
             "Element ZOR is missing child element. ZORFileInfo is missing."});
        row("a field that is missing",
            {documentWith("<serial>00001234</serial>", ""), "schema", "ZORControllerInfo/serial",
             "Element ZORControllerInfo is missing child element. ZORControllerInfo/serial is "
             "missing."});
        row("a field with another name",
            {documentWith("<domain>example.com</domain>", "<Domain>example.com</Domain>"), "schema",
             "ZORBackupData/domain",
             "Element Domain is not defined in this scope. ZORBackupData/domain is missing."});
        row("an unknown field",
            {documentWith("<domain>", "<a/><domain>"), "schema", "ZORBackupData/a",
             "Element a is not defined"});
        row("a field that occurs twice",
            {documentWith("<name>", "<name>a</name><name>"), "schema", "ZORControllerInfo/name",
             ""});

        const QList<QPair<QByteArray, QString>> texts{
            {"tracker-7", "ZORControllerInfo/name"},
            {"00001234", "ZORControllerInfo/serial"},
            {"v4.2.1", "ZORControllerInfo/ptVersion"},
            {"v3.5", "ZORControllerInfo/ctVersion"},
            {"Model 5", "ZORControllerInfo/systemModel"},
            {"192.168.0.7/24 gw 192.168.0.1", "ZORBackupData/net"},
            {"example.com", "ZORBackupData/domain"},
            {"192.168.0.2", "ZORBackupData/nameServer"},
            {"192.168.0.3", "ZORBackupData/ntpServer"},
            {"slave-b", "ZORBackupData/slaves/slave"},
            {"config20240305140709123", "ZORBackupData/activeConfig"}};
        for (const auto &[text, field] : texts) {
            row(qPrintable("empty: " + field),
                {documentWith('>' + text + '<', "><"), "reader", field,
                 "The field is empty or does not begin with text."});
        }
        row("a format that is not given in full",
            {documentWith("v1.0.0", "v1.0"), "reader", "ZORFileInfo/version",
             "The field does not hold the version 1.0.0."});
        row("a version that is none",
            {documentWith("v4.2.1", "v2.x"), "reader", "ZORControllerInfo/ptVersion",
             "The field holds no version."});
        row("data that is plain text",
            {documentWith("<![CDATA[AAH+/yBjb25maWd1cmF0aW9ucw==]]>", "AAH+"), "reader",
             "ZORBackupData/configData", "The field does not begin with a CDATA section."});

        row("no sections", {"<ZOR/>", "content", "", "The document is empty."});
    }

    void refusesWhatARestoreRefuses()
    {
        QFETCH(const Broken, broken);
        const QString path = file(broken.document);
        const Tool::Run run = Tool::run({"verify", "--json", path});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.complaint, QString());

        const QJsonObject judgement = run.object();
        QCOMPARE(judgement["accepted"], QJsonValue(false));
        const QJsonObject problem = judgement["problem"].toObject();
        QCOMPARE(problem["file"].toString(), path);
        QCOMPARE(problem["stage"].toString(), broken.stage);
        QCOMPARE(problem["field"].toString(), broken.field);
        QVERIFY2(problem["text"].toString().startsWith(broken.text),
                 qPrintable(problem["text"].toString()));
        const bool isAboutTheWhole = broken.stage == "guard" || broken.stage == "content";
        QCOMPARE(problem["line"].toInt() == 0, isAboutTheWhole);
    }

    void tellsPeopleTheSame()
    {
        const QString path = file(documentWith(">example.com<", "><"));
        const Tool::Run run = Tool::run({"verify", path});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.output, QString());
        QCOMPARE(run.complaint,
                 path
                     + ": line 21, column 19: ZORBackupData/domain: The field is empty or does not "
                       "begin with text.\n");
    }

    void cannotJudgeWhatItCannotRead_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("complaint");
        QVERIFY(QDir(m_folder.path()).mkpath("nothing"));
        QVERIFY(QFile::link("self.xml", m_folder.filePath("self.xml")));
        QTest::newRow("not there") << "/nosuch.xml"
                                   << "/nosuch.xml: No such file or directory.\n";
        QTest::newRow("a link to itself")
            << m_folder.filePath("self.xml")
            << m_folder.filePath("self.xml") + ": Too many levels of symbolic links.\n";
        QTest::newRow("an empty folder") << m_folder.filePath("nothing")
                                         << m_folder.filePath("nothing")
                + ": This is a folder in which there are no *.xml files.\n";
        QTest::newRow("a device") << "/dev/zero"
                                  << "/dev/zero: This is not a regular file.\n";
    }

    void cannotJudgeWhatItCannotRead()
    {
        QFETCH(const QString, path);
        for (const QString &command : {QStringLiteral("verify"), QStringLiteral("show")}) {
            const Tool::Run run = Tool::run({command, path});
            QCOMPARE(run.exitCode, 2);
            QTEST(run.complaint, "complaint");
            const Tool::Run forPrograms = Tool::run({command, "--json", path});
            const QJsonObject judgement = forPrograms.array().isEmpty()
                ? forPrograms.object()
                : forPrograms.array().first().toObject();
            const QJsonObject problem = judgement["problem"].toObject();
            QCOMPARE(problem["stage"].toString(), QStringLiteral("file"));
        }
    }

    void answersWithTheWorst()
    {
        const QTemporaryDir folder;
        const QString good = Tool::makeFile(folder.filePath("a/good.xml"), document());
        QCOMPARE(Tool::run({"verify", folder.path()}).exitCode, 0);
        const QString broken = Tool::makeFile(folder.filePath("b/broken.xml"), "<ZOR/>");
        const Tool::Run run = Tool::run({"verify", folder.path()});
        QCOMPARE(run.exitCode, 1);
        QVERIFY(run.output.startsWith(good + ": A restore would accept this backup.\n"));
        QCOMPARE(run.complaint, broken + ": The document is empty.\n");
        QCOMPARE(Tool::run({"verify", folder.path(), "/nosuch.xml", m_written}).exitCode, 2);
        QCOMPARE(Tool::run({"verify", "--json", folder.path()}).array().size(), 2);
    }

private:
    QString file(const QByteArray &content) const
    {
        return SampleBackup::makeFile(m_folder.path(), content);
    }

    const QTemporaryDir m_folder;
    QString m_written; // by the plug-in's own writer
};

VELTRA4_TEST(TestToolVerify)
#include "tst_toolverify.moc"
