#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QTest>

using SampleBackup::document;
using SampleBackup::documentWith;

class TestToolShow : public QObject
{
    Q_OBJECT

private:
    const Tool::Folder m_folder;

    QString file(const QByteArray &content) const { return m_folder.make("a.xml", content); }

    static QString sha256Of(const QByteArray &data)
    {
        return QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex();
    }

private slots:
    void showsEveryField()
    {
        Tool::expectRun({"show", file(document())}, 0,
                        "Host name             tracker-7\n"
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
                        "Configuration data    19 bytes, SHA-256 "
                            + sha256Of(QByteArray("\x00\x01\xfe\xff configurations", 19)) + '\n');
    }

    void showsAnEmptyCascade()
    {
        const QByteArray slaves = "<slave>slave-a</slave>\n\t\t\t<slave>slave-b</slave>";
        const QString shown = Tool::run({"show", file(documentWith(slaves, ""))}).output;
        QVERIFY2(shown.contains("\nCascade               none\n"), qPrintable(shown));
    }

    void showsEveryFieldAsJson()
    {
        const QString path = file(document());
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
        const QJsonObject backup{
            {"ZORControllerInfo", controller},
            {"ZORBackupInfo", QJsonObject{{"creationDate", "2024-03-05T14:07:09"}}},
            {"ZORBackupData", settings}};
        const QJsonObject expected{{"command", "show"},
                                   {"file", path},
                                   {"accepted", true},
                                   {"warnings", QJsonArray()},
                                   {"backup", backup}};
        const Tool::Run run = Tool::run({"show", path, "--json"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.object(), expected);
    }

    void showsAllBytesOfTheData()
    {
        QByteArray data;
        for (int i = 0; i < (1 << 20) + 1; ++i) {
            data += char(i);
        }
        const QString path = file(documentWith("AAH+/yBjb25maWd1cmF0aW9ucw==", data.toBase64()));
        const QJsonValue shown = Tool::run({"show", "--json", path})
                                     .object()
                                     .value("backup")["ZORBackupData"]["configData"];
        QCOMPARE(shown["size"].toInt(), data.size());
        QCOMPARE(shown["sha256"].toString(), sha256Of(data));
    }

    void doesNotShowWhatIsRefused()
    {
        const QString path = file(documentWith(">tracker-7<", "><"));
        const Tool::Run run = Tool::run({"show", path});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.output, "");
        QVERIFY(run.complaint.contains("ZORControllerInfo/name"));
        QVERIFY(!Tool::run({"show", "--json", path}).object().contains("backup"));
    }

    void letsNoValueSpeakToTheTerminal()
    {
        const QString path = file(documentWith("tracker-7",
                                               "a\xc2\x9b"
                                               "2J\nModel  b"));
        QCOMPARE(Tool::run({"show", path}).output.section('\n', 0, 0),
                 "Host name             a\\u{9b}2J\\u{a}Model  b");
    }
};

VELTRA4_TEST(TestToolShow)
#include "tst_toolshow.moc"
