#include "projectversion.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

using SampleBackup::document;
using SampleBackup::documentWith;

struct Outcome
{
    int exitCode = -1;
    QString output;
    QString complaint;
};

QString programPath()
{
    return QDir(QCoreApplication::applicationDirPath()).filePath("veltra4-backup");
}

Outcome run(const QStringList &arguments)
{
    QProcess program;
    program.start(programPath(), arguments);
    Outcome outcome;
    if (program.waitForFinished() && program.exitStatus() == QProcess::NormalExit) {
        outcome.exitCode = program.exitCode();
    }
    outcome.output = QString::fromUtf8(program.readAllStandardOutput());
    outcome.complaint = QString::fromUtf8(program.readAllStandardError());
    return outcome;
}

QJsonObject json(const Outcome &outcome)
{
    QJsonParseError error;
    const QJsonDocument parsed = QJsonDocument::fromJson(outcome.output.toUtf8(), &error);
    return error.error == QJsonParseError::NoError ? parsed.object() : QJsonObject();
}

QString sha256Of(const QByteArray &data)
{
    return QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex());
}

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

class TestVeltra4Backup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void acceptsWhatTheWriterWrites();
    void acceptsASlavelessCascade();
    void warnsOfABackupWithoutConfigurations();
    void refusesWhatARestoreRefuses_data();
    void refusesWhatARestoreRefuses();
    void tellsPeopleTheSame();
    void cannotJudgeWhatItCannotRead_data();
    void cannotJudgeWhatItCannotRead();
    void showsEveryField();
    void showsEveryFieldAsJson();
    void showsAllBytesOfTheData();
    void doesNotShowWhatIsRefused();
    void letsNoValueSpeakToTheTerminal();
    void findsNoDifferenceInACopy();
    void findsTheDifference_data();
    void findsTheDifference();
    void printsTheDifferenceForPeople();
    void ignoresFields();
    void comparesNoBrokenBackup();
    void refusesAWrongCommandLine_data();
    void refusesAWrongCommandLine();
    void doesNotPassOffWhatItCannotPrint_data();
    void doesNotPassOffWhatItCannotPrint();
    void helpNamesEverything();
    void versionIsThatOfTheProject();

private:
    QString file(const QByteArray &content) const
    {
        return SampleBackup::makeFile(m_folder.path(), content);
    }

    const QTemporaryDir m_folder;
    QString m_written; // by the plug-in's own writer
};

void TestVeltra4Backup::initTestCase()
{
    FullBackup backup(nullptr, nullptr);
    SampleBackup::fill(&backup);
    m_written = m_folder.filePath("written.xml");
    QVERIFY(backup.writeToFile(m_written));
}

void TestVeltra4Backup::acceptsWhatTheWriterWrites()
{
    const Outcome outcome = run({"verify", m_written});
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output, m_written + ": A restore would accept this backup.\n");
    QCOMPARE(outcome.complaint, QString());

    const QJsonObject expected{
        {"command", "verify"}, {"file", m_written}, {"accepted", true}, {"warnings", QJsonArray()}};
    const Outcome forPrograms = run({"verify", "--json", m_written});
    QCOMPARE(forPrograms.exitCode, 0);
    QCOMPARE(json(forPrograms), expected);
    QCOMPARE(forPrograms.complaint, QString());
}

void TestVeltra4Backup::acceptsASlavelessCascade()
{
    FullBackup backup(nullptr, nullptr);
    SampleBackup::fill(&backup);
    backup.slaves.clear();
    const QString path = m_folder.filePath("slaveless.xml");
    QVERIFY(backup.writeToFile(path));
    const Outcome outcome = run({"show", path});
    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(outcome.output.contains(QRegularExpression("\nCascade +none\n")),
             qPrintable(outcome.output));
}

void TestVeltra4Backup::warnsOfABackupWithoutConfigurations()
{
    const QString path = file(documentWith("AAH+/yBjb25maWd1cmF0aW9ucw==", ""));
    const Outcome outcome = run({"verify", path});
    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(outcome.complaint.startsWith(path + ": It holds no configurations"),
             qPrintable(outcome.complaint));
    QCOMPARE(json(run({"verify", "--json", path}))["warnings"].toArray().size(), 1);
}

void TestVeltra4Backup::refusesWhatARestoreRefuses_data()
{
    QTest::addColumn<Broken>("broken");
    const auto row = [](const char *name, const Broken &broken) { QTest::newRow(name) << broken; };

    row("a document type declaration",
        {documentWith("<ZOR>", "<!DOCTYPE ZOR><ZOR>"), "guard", "", "The file is larger than 512"});
    row("two million elements",
        {"<ZOR>" + QByteArray("<a/>").repeated(2000000) + "</ZOR>", "guard", "", "The file is"});

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
        {documentWith("2024-03-05T14:07:09", "yesterday"), "schema", "ZORBackupInfo/creationDate",
         "Content of element creationDate does not match its type definition: yesterday is not "
         "valid according to xs:dateTime."});
    row("data that is not base64",
        {documentWith("AAH+", "A=H+"), "schema", "ZORBackupData/configData",
         "Content of element configData"});
    row("a section that is missing",
        {documentWith("<ZORFileInfo>\n\t\t<filetype>ZORBackup</filetype>\n\t\t"
                      "<version>v1.0.0</version>\n\t</ZORFileInfo>",
                      ""),
         "schema", "ZORFileInfo", "Element ZOR is missing child element. ZORFileInfo is missing."});
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
        {documentWith("<name>", "<name>a</name><name>"), "schema", "ZORControllerInfo/name", ""});

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

void TestVeltra4Backup::refusesWhatARestoreRefuses()
{
    QFETCH(const Broken, broken);
    const QString path = file(broken.document);
    const Outcome outcome = run({"verify", "--json", path});
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.complaint, QString());

    const QJsonObject judgement = json(outcome);
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

void TestVeltra4Backup::tellsPeopleTheSame()
{
    const QString path = file(documentWith(">example.com<", "><"));
    const Outcome outcome = run({"verify", path});
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.complaint,
             path
                 + ": line 21, column 19: ZORBackupData/domain: The field is empty or does not "
                   "begin with text.\n");
}

void TestVeltra4Backup::cannotJudgeWhatItCannotRead_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("not there") << "/nosuch.xml"
                               << "/nosuch.xml: No such file or directory.\n";
    QTest::newRow("a folder") << "/"
                              << "/: This is not a regular file.\n";
    QTest::newRow("a device") << "/dev/zero"
                              << "/dev/zero: This is not a regular file.\n";
}

void TestVeltra4Backup::cannotJudgeWhatItCannotRead()
{
    QFETCH(const QString, path);
    for (const QString &command : {QStringLiteral("verify"), QStringLiteral("show")}) {
        const Outcome outcome = run({command, path});
        QCOMPARE(outcome.exitCode, 2);
        QTEST(outcome.complaint, "complaint");
        const QJsonObject problem = json(run({command, "--json", path}))["problem"].toObject();
        QCOMPARE(problem["stage"].toString(), QStringLiteral("file"));
    }
}

void TestVeltra4Backup::showsEveryField()
{
    const Outcome outcome = run({"show", file(document())});
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output,
             QStringLiteral("Host name             tracker-7\n"
                            "Serial number         00001234\n"
                            "Tracking software     v4.2.1\n"
                            "Firmware              v3.5\n"
                            "Model                 Model 5\n"
                            "Created               2024-03-05T14:07:09\n"
                            "Network               192.168.0.7/24 gw 192.168.0.1\n"
                            "Domain                example.com\n"
                            "Name server           192.168.0.2\n"
                            "Time server           192.168.0.3\n"
                            "Cascade               slave-a, slave-b\n"
                            "Active configuration  config20240305140709123\n"
                            "Configuration data    19 bytes, SHA-256 ")
                 + sha256Of(QByteArray("\x00\x01\xfe\xff configurations", 19)) + "\n");
    QCOMPARE(outcome.complaint, QString());
}

void TestVeltra4Backup::showsEveryFieldAsJson()
{
    const QString path = file(document());
    const Outcome outcome = run({"show", path, "--json"});
    QCOMPARE(outcome.exitCode, 0);
    const QByteArray data("\x00\x01\xfe\xff configurations", 19);
    const QJsonObject controller{{"name", "tracker-7"},
                                 {"serial", "00001234"},
                                 {"ptVersion", "v4.2.1"},
                                 {"ctVersion", "v3.5"},
                                 {"systemModel", "Model 5"}};
    const QJsonObject settings{
        {"net", "192.168.0.7/24 gw 192.168.0.1"},
        {"domain", "example.com"},
        {"nameServer", "192.168.0.2"},
        {"ntpServer", "192.168.0.3"},
        {"slaves", QJsonArray{"slave-a", "slave-b"}},
        {"activeConfig", "config20240305140709123"},
        {"configData", QJsonObject{{"size", data.size()}, {"sha256", sha256Of(data)}}}};
    const QJsonObject expected{
        {"command", "show"},
        {"file", path},
        {"accepted", true},
        {"warnings", QJsonArray()},
        {"backup",
         QJsonObject{{"ZORControllerInfo", controller},
                     {"ZORBackupInfo", QJsonObject{{"creationDate", "2024-03-05T14:07:09"}}},
                     {"ZORBackupData", settings}}}};
    QCOMPARE(json(outcome), expected);
}

void TestVeltra4Backup::showsAllBytesOfTheData()
{
    FullBackup backup(nullptr, nullptr);
    SampleBackup::fill(&backup);
    backup.configData.clear();
    for (int i = 0; i < (1 << 20) + 1; ++i) {
        backup.configData += char(i);
    }
    const QString path = m_folder.filePath("large.xml");
    QVERIFY(backup.writeToFile(path));
    const QJsonValue shown = json(run({"show", "--json", path}))["backup"];
    const QJsonValue data = shown["ZORBackupData"]["configData"];
    QCOMPARE(data["size"].toInt(), backup.configData.size());
    QCOMPARE(data["sha256"].toString(), sha256Of(backup.configData));
}

void TestVeltra4Backup::doesNotShowWhatIsRefused()
{
    const QString path = file(documentWith(">tracker-7<", "><"));
    const Outcome outcome = run({"show", path});
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.output, QString());
    QVERIFY(outcome.complaint.contains("ZORControllerInfo/name"));
    QVERIFY(!json(run({"show", "--json", path})).contains("backup"));
}

void TestVeltra4Backup::letsNoValueSpeakToTheTerminal()
{
    const QString path = file(documentWith("tracker-7",
                                           "a\xc2\x9b"
                                           "2J\nModel  b"));
    const Outcome outcome = run({"show", path});
    QCOMPARE(outcome.output.section('\n', 0, 0),
             QStringLiteral("Host name             a\\u{9b}2J\\u{a}Model  b"));
}

void TestVeltra4Backup::findsNoDifferenceInACopy()
{
    const Outcome outcome = run({"diff", file(document()), file(document())});
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.complaint, QString());
    const QJsonObject comparison = json(run({"diff", "--json", m_written, m_written}));
    QCOMPARE(comparison["same"], QJsonValue(true));
    QCOMPARE(comparison["differences"], QJsonValue(QJsonArray()));
}

void TestVeltra4Backup::findsTheDifference_data()
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

void TestVeltra4Backup::findsTheDifference()
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, after);
    const Outcome outcome =
        run({"diff", "--json", file(document()), file(documentWith(before, after))});
    QCOMPARE(outcome.exitCode, 1);
    const QJsonObject comparison = json(outcome);
    QCOMPARE(comparison["same"], QJsonValue(false));
    const QJsonArray differences = comparison["differences"].toArray();
    QCOMPARE(differences.size(), 1);
    const QJsonObject difference = differences[0].toObject();
    QTEST(difference["field"].toString(), "field");
    QVERIFY(difference["first"] != difference["second"]);
}

void TestVeltra4Backup::printsTheDifferenceForPeople()
{
    const Outcome outcome = run({"diff", file(document()), file(documentWith("slave-b", "b"))});
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.output,
             QStringLiteral("Cascade (ZORBackupData/slaves)\n"
                            "  - slave-a, slave-b\n"
                            "  + slave-a, b\n"));
}

void TestVeltra4Backup::ignoresFields()
{
    const QString first = file(document());
    QByteArray changed = documentWith("14:07:09", "14:07:10");
    changed.replace("example.com", "example.org");
    const QString second = file(changed);
    QCOMPARE(json(run({"diff", "--json", first, second}))["differences"].toArray().size(), 2);
    QCOMPARE(run({"diff", "--ignore", "creationDate", first, second}).exitCode, 1);
    QCOMPARE(
        run({"diff", "--ignore", "creationDate", "--ignore", "ZORBackupData/domain", first, second})
            .exitCode,
        0);
}

void TestVeltra4Backup::comparesNoBrokenBackup()
{
    const QString broken = file(documentWith(">example.com<", "><"));
    for (const QStringList &files :
         {QStringList{m_written, broken}, QStringList{broken, m_written}}) {
        const Outcome outcome = run(QStringList{"diff"} + files);
        QCOMPARE(outcome.exitCode, 2);
        QCOMPARE(outcome.output, QString());
        QVERIFY(outcome.complaint.startsWith(broken + ": line 21"));
        const QJsonObject comparison = json(run(QStringList{"diff", "--json"} + files));
        QVERIFY(!comparison.contains("same"));
        QCOMPARE(comparison["problems"].toArray().size(), 1);
        QCOMPARE(comparison["problems"].toArray()[0].toObject()["file"].toString(), broken);
    }
    QCOMPARE(run({"diff", m_written, "/nosuch.xml"}).exitCode, 2);
}

void TestVeltra4Backup::refusesAWrongCommandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("problem");
    const QString commands = "The first argument is verify, show or diff; see --help.";
    QTest::newRow("nothing") << QStringList() << commands;
    QTest::newRow("no command") << QStringList{"a.xml"} << commands;
    QTest::newRow("no file") << QStringList{"verify"} << "verify wants one file.";
    QTest::newRow("two files") << QStringList{"show", "a", "b"} << "show wants one file.";
    QTest::newRow("no name") << QStringList{"show", ""} << "A file has no name.";
    QTest::newRow("half a comparison") << QStringList{"diff", "a"} << "diff wants two files.";
    QTest::newRow("unknown option")
        << QStringList{"verify", "--bogus", "a"} << "Unknown option 'bogus'.";
    QTest::newRow("unknown field")
        << QStringList{"diff", "--ignore", "serials", "a", "b"} << "There is no field \"serials\".";
    QTest::newRow("nothing to ignore")
        << QStringList{"show", "--ignore", "serial", "a"} << "--ignore goes with diff only.";
}

void TestVeltra4Backup::refusesAWrongCommandLine()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QString, problem);
    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.complaint, "veltra4-backup: " + problem + "\n");
}

void TestVeltra4Backup::doesNotPassOffWhatItCannotPrint_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("verify") << QStringList{"verify"};
    QTest::newRow("show") << QStringList{"show"};
    QTest::newRow("JSON") << QStringList{"verify", "--json"};
}

void TestVeltra4Backup::doesNotPassOffWhatItCannotPrint()
{
    QFETCH(const QStringList, arguments);
    QProcess program;
    program.setStandardOutputFile("/dev/full");
    program.start(programPath(), arguments + QStringList{m_written});
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), 2);
    QCOMPARE(program.readAllStandardError(),
             QByteArray("veltra4-backup: the output cannot be written\n"));
}

void TestVeltra4Backup::helpNamesEverything()
{
    const Outcome outcome = run({"--help"});
    QCOMPARE(outcome.exitCode, 0);
    for (const char *word : {"verify FILE", "show FILE", "diff FILE FILE", "--json", "--ignore",
                             "--version", "Exit status"}) {
        QVERIFY2(outcome.output.contains(word), word);
    }
}

void TestVeltra4Backup::versionIsThatOfTheProject()
{
    const Outcome outcome = run({"--version"});
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output, QStringLiteral("veltra4-backup " VELTRA4_VERSION "\n"));
}

VELTRA4_TEST_MAIN(TestVeltra4Backup)
#include "tst_veltra4backup.moc"
