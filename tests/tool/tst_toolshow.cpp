#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QTemporaryDir>
#include <QtTest>

using SampleBackup::document;
using SampleBackup::documentWith;

namespace {

QString sha256Of(const QByteArray &data)
{
    return QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex());
}

} // namespace

class TestToolShow : public QObject
{
    Q_OBJECT

private slots:
    void acceptsASlavelessCascade()
    {
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        backup.slaves.clear();
        const QString path = m_folder.filePath("slaveless.xml");
        QVERIFY(backup.writeToFile(path));
        const Tool::Run run = Tool::run({"show", path});
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.output.contains(QRegularExpression("\nCascade +none\n")),
                 qPrintable(run.output));
    }

    void showsEveryField()
    {
        const Tool::Run run = Tool::run({"show", file(document())});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.output,
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
        QCOMPARE(run.complaint, QString());
    }

    void showsEveryFieldAsJson()
    {
        const QString path = file(document());
        const Tool::Run run = Tool::run({"show", path, "--json"});
        QCOMPARE(run.exitCode, 0);
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
        QCOMPARE(run.object(), expected);
    }

    void showsAllBytesOfTheData()
    {
        FullBackup backup(nullptr, nullptr);
        SampleBackup::fill(&backup);
        backup.configData.clear();
        for (int i = 0; i < (1 << 20) + 1; ++i) {
            backup.configData += char(i);
        }
        const QString path = m_folder.filePath("large.xml");
        QVERIFY(backup.writeToFile(path));
        const QJsonValue shown = Tool::run({"show", "--json", path}).object()["backup"];
        const QJsonValue data = shown["ZORBackupData"]["configData"];
        QCOMPARE(data["size"].toInt(), backup.configData.size());
        QCOMPARE(data["sha256"].toString(), sha256Of(backup.configData));
    }

    void doesNotShowWhatIsRefused()
    {
        const QString path = file(documentWith(">tracker-7<", "><"));
        const Tool::Run run = Tool::run({"show", path});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.output, QString());
        QVERIFY(run.complaint.contains("ZORControllerInfo/name"));
        QVERIFY(!Tool::run({"show", "--json", path}).object().contains("backup"));
    }

    void letsNoValueSpeakToTheTerminal()
    {
        const QString path = file(documentWith("tracker-7",
                                               "a\xc2\x9b"
                                               "2J\nModel  b"));
        const Tool::Run run = Tool::run({"show", path});
        QCOMPARE(run.output.section('\n', 0, 0),
                 QStringLiteral("Host name             a\\u{9b}2J\\u{a}Model  b"));
    }

private:
    QString file(const QByteArray &content) const
    {
        return SampleBackup::makeFile(m_folder.path(), content);
    }

    const QTemporaryDir m_folder;
};

VELTRA4_TEST(TestToolShow)
#include "tst_toolshow.moc"
