#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QTest>

using SampleBackup::document;
using SampleBackup::documentWith;
using Tool::expectRun;

class TestToolVerify : public QObject
{
    Q_OBJECT

private:
    const Tool::Folder m_folder;

private slots:
    void acceptsWhatTheWriterWrites()
    {
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        const QString written = m_folder.path("written.xml");
        QVERIFY(backup.writeToFile(written));
        expectRun(
            {"verify", written}, 0,
            written + ": A restore would accept this backup.\n" + written
                + ": It fits the model \"Model 5\" with tracking software v4.2.1 or newer and, if "
                  "it is an embedded controller, firmware v3.5 or newer.\n"
                  "Whether the configuration data inside are whole, only a controller can tell.\n");
        const QJsonObject fits{
            {"systemModel", "Model 5"}, {"ptVersion", "v4.2.1"}, {"ctVersion", "v3.5"}};
        const QJsonObject expected{{"command", "verify"},     {"file", written},
                                   {"accepted", true},        {"warnings", QJsonArray()},
                                   {"misfits", QJsonArray()}, {"fits", fits}};
        const Tool::Run forPrograms = Tool::run({"verify", "--json", written});
        QCOMPARE(forPrograms.exitCode, 0);
        QCOMPARE(forPrograms.object(), expected);
        QCOMPARE(forPrograms.complaint, "");
    }

    void warnsOfABackupWithoutConfigurations()
    {
        const QString path =
            m_folder.make("none.xml", documentWith("AAH+/yBjb25maWd1cmF0aW9ucw==", ""));
        const QString warning = "It holds no configurations: a restore would only bring back the "
                                "settings and the cascade.";
        const Tool::Run run = Tool::run({"verify", path});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.complaint, path + ": " + warning + '\n');
        QCOMPARE(Tool::run({"verify", "--json", path}).object()["warnings"], QJsonArray{warning});
    }

    void refusesWhatARestoreRefuses()
    {
        const auto expectRefusal = [this](const QByteArray &content, const QString &stage,
                                          const QString &field, const QString &text) {
            const QString path = m_folder.make("broken.xml", content);
            const Tool::Run run = Tool::run({"verify", "--json", path});
            QCOMPARE(run.exitCode, 1);
            QCOMPARE(run.complaint, "");
            QCOMPARE(run.object()["accepted"], QJsonValue(false));
            const QJsonValue problem = run.object()["problem"];
            QCOMPARE(problem["file"].toString(), path);
            QCOMPARE(problem["stage"].toString(), stage);
            QCOMPARE(problem["field"].toString(), field);
            QCOMPARE(problem["text"].toString(), text);
            QCOMPARE(problem["line"].toInt() > 0, stage == "schema" || stage == "reader");
        };
        expectRefusal(documentWith("<ZOR>", "<!DOCTYPE ZOR><ZOR>"), "guard", "",
                      "The file is larger than 512 MiB, has more markup than any backup, or has a "
                      "document type declaration.");
        expectRefusal(documentWith("2024-03-05T14:07:09", "yesterday"), "schema",
                      "ZORBackupInfo/creationDate",
                      "Content of element creationDate does not match its type definition: "
                      "yesterday is not valid according to xs:dateTime.");
        expectRefusal(documentWith("<serial>00001234</serial>", ""), "schema",
                      "ZORControllerInfo/serial",
                      "Element ZORControllerInfo is missing child element. "
                      "ZORControllerInfo/serial is missing.");
        expectRefusal(documentWith(">slave-b<", "><"), "reader", "ZORBackupData/slaves/slave",
                      "The field is empty or does not begin with text.");
        expectRefusal("<ZOR/>", "content", "", "The document is empty.");
    }

    void tellsPeopleTheSame()
    {
        const QString path = m_folder.make("broken.xml", documentWith(">example.com<", "><"));
        expectRun({"verify", path}, 1, "",
                  path
                      + ": line 21, column 19: ZORBackupData/domain: The field is empty or does "
                        "not begin with text.\n");
        const QJsonValue problem = Tool::run({"verify", "--json", path}).object()["problem"];
        QCOMPARE(problem["line"].toInt(), 21);
        QCOMPARE(problem["column"].toInt(), 19);
    }

    void cannotJudgeWhatItCannotRead()
    {
        QVERIFY(QDir(m_folder.path()).mkpath("nothing"));
        QVERIFY(QFile::link("self.xml", m_folder.path("self.xml")));
        const QList<QPair<QString, QString>> reasons{
            {"/nosuch.xml", "No such file or directory."},
            {m_folder.path("self.xml"), "Too many levels of symbolic links."},
            {m_folder.path("nothing"), "This is a folder in which there are no *.xml files."},
            {"/dev/zero", "This is not a regular file."}};
        for (const auto &[path, reason] : reasons) {
            for (const QString command : {"verify", "show"}) {
                expectRun({command, path}, 2, "", path + ": " + reason + '\n');
                const Tool::Run forPrograms = Tool::run({command, "--json", path});
                const QJsonValue judgement = path.endsWith("nothing")
                    ? forPrograms.array().at(0)
                    : QJsonValue(forPrograms.object());
                QCOMPARE(judgement["problem"]["stage"].toString(), "file");
            }
        }
    }

    void tellsWhetherItFits()
    {
        const QString path = m_folder.make("a.xml", document());
        const auto expectMisfit = [&](const QStringList &controller, const QString &misfit) {
            const QStringList arguments = QStringList{"verify", path} + controller;
            const Tool::Run run = Tool::run(arguments);
            QCOMPARE(run.exitCode, misfit.isEmpty() ? 0 : 1);
            QCOMPARE(run.complaint, misfit.isEmpty() ? "" : path + ": " + misfit + '\n');
            const QJsonObject told = Tool::run(arguments + QStringList{"--json"}).object();
            QCOMPARE(told["misfits"].toArray(),
                     misfit.isEmpty() ? QJsonArray() : QJsonArray{misfit});
        };
        expectMisfit({"--model", "Model 5", "--tracking", "4.2.1", "--firmware", "v3.5"}, "");
        expectMisfit({"--tracking", "4.10", "--firmware", "4"}, "");
        expectMisfit({"--model", "model 5"},
                     "It does not fit the model \"model 5\": it is of the model \"Model 5\".");
        for (const QString version : {"4.2.0", "4.2"}) {
            expectMisfit({"--tracking", version},
                         "It does not fit tracking software v" + version
                             + ": it wants v4.2.1 or newer.");
        }
        expectMisfit({"--firmware", "3.4.9"},
                     "It does not fit an embedded controller's firmware v3.4.9: it wants v3.5 or "
                     "newer.");
    }

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

    void answersWithTheWorst()
    {
        const Tool::Folder folder;
        const QString good = folder.make("a/good.xml", document());
        QCOMPARE(Tool::run({"verify", folder.path()}).exitCode, 0);
        const QString broken = folder.make("b/broken.xml", "<ZOR/>");
        const Tool::Run run = Tool::run({"verify", folder.path()});
        QCOMPARE(run.exitCode, 1);
        QVERIFY(run.output.startsWith(good + ": A restore would accept this backup.\n"));
        QCOMPARE(run.complaint, broken + ": The document is empty.\n");
        QCOMPARE(Tool::run({"verify", folder.path(), "/nosuch.xml", good}).exitCode, 2);
        QCOMPARE(Tool::run({"verify", "--json", folder.path()}).array().size(), 2);
    }
};

VELTRA4_TEST(TestToolVerify)
#include "tst_toolverify.moc"
