#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QDateTime>
#include <QTemporaryDir>
#include <QtTest>

using Tool::backupOf;

namespace {

QByteArray timeBefore(int hours)
{
    const QDateTime time = QDateTime::currentDateTime().addSecs(-3600LL * hours);
    return time.toString("yyyy-MM-ddTHH:mm:ss").toLatin1();
}

} // namespace

class TestToolWatch : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        make("old.xml", backupOf("tracker-7", "2024-03-05T14:07:09"));
    }

    void isContentWithAYoungBackup()
    {
        make("young.xml", backupOf("tracker-7", timeBefore(40)));
        const Tool::Run run = watch({"--newer-than", "2d", "--controller", "tracker-7"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.complaint, QString());
    }

    void missesAYoungBackup()
    {
        make("young.xml", backupOf("tracker-8", timeBefore(40)));
        QCOMPARE(watch({"--newer-than", "2d"}).exitCode, 0);
        const Tool::Run run = watch({"--newer-than", "2d", "--controller", "tracker-7"});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(
            run.complaint,
            QString(
                "veltra4-backup: There is no good backup of tracker-7 newer than 2d. The newest "
                "was made at 2024-03-05 14:07:09.\n"));
        QVERIFY(!run.output.contains("young.xml"));
        QCOMPARE(watch({"--newer-than", "36h"}).exitCode, 1);
    }

    void missesABackupOfTheController()
    {
        const Tool::Run run = watch({"--controller", "tracker-9"});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.complaint, QString("veltra4-backup: There is no good backup of tracker-9.\n"));
        QCOMPARE(run.output, QString());
    }

    void isNotContentWithABrokenOne()
    {
        make("young.xml", backupOf("tracker-7", timeBefore(1)).replace(">example.com<", "><"));
        const Tool::Run run = watch({"--newer-than", "2d"});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.complaint.count('\n'), 2);
        QVERIFY(run.complaint.contains("There is no good backup newer than 2d."));
    }

    void isNotContentWithOneThatDoesNotFit()
    {
        make("young.xml", backupOf("tracker-7", timeBefore(1)));
        QCOMPARE(watch({"--newer-than", "2d", "--model", "Model 5"}).exitCode, 0);
        QCOMPARE(watch({"--newer-than", "2d", "--model", "Model 6"}).exitCode, 1);
    }

    void isContentWhateverElseThereIs()
    {
        make("broken.xml", "<ZOR/>");
        make("young.xml", backupOf("tracker-7", timeBefore(1)));
        const Tool::Run run = watch({"--newer-than", "2d", "--controller", "tracker-7"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.complaint, m_folder->filePath("broken.xml") + ": The document is empty.\n");
    }

    void tellsProgramsTheSame()
    {
        const Tool::Run run = watch({"--newer-than", "2d", "--json"});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.array().size(), 1);
        QVERIFY(run.complaint.startsWith("veltra4-backup: There is no good backup"));
    }

    void cannotTellWhereItCannotRead()
    {
        QCOMPARE(Tool::run({"verify", "--newer-than", "2d", "/nosuch"}).exitCode, 2);
    }

private:
    Tool::Run watch(const QStringList &options) const
    {
        return Tool::run(QStringList{"verify", m_folder->path()} + options);
    }
    void make(const QString &name, const QByteArray &content) const
    {
        Tool::makeFile(m_folder->filePath(name), content);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

VELTRA4_TEST(TestToolWatch)
#include "tst_toolwatch.moc"
