#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QDateTime>
#include <QTest>

/// Told to watch that there are young backups.
class TestToolWatch : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Tool::Folder> m_folder;

    static QByteArray backupOf(const QByteArray &controller, int hoursAgo)
    {
        const QDateTime time = QDateTime::currentDateTime().addSecs(-3600LL * hoursAgo);
        return Tool::backupOf(controller, time.toString("yyyy-MM-ddTHH:mm:ss").toLatin1());
    }

    Tool::Run watch(const QStringList &options) const
    {
        return Tool::run(QStringList{"verify", m_folder->path()} + options);
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<Tool::Folder>();
        m_folder->make("old.xml", Tool::backupOf("tracker-7", "2024-03-05T14:07:09"));
    }

    void isContentWithAYoungBackupWhateverElseThereIs()
    {
        m_folder->make("young.xml", backupOf("tracker-7", 40));
        const QString broken = m_folder->make("broken.xml", "<ZOR/>");
        const Tool::Run run = watch({"--newer-than", "2d", "--controller", "tracker-7"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.complaint, broken + ": The document is empty.\n");
    }

    void missesAYoungBackup()
    {
        m_folder->make("young.xml", backupOf("tracker-8", 40));
        QCOMPARE(watch({"--newer-than", "2d"}).exitCode, 0);
        const Tool::Run run = watch({"--newer-than", "2d", "--controller", "tracker-7"});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.complaint,
                 "veltra4-backup: There is no good backup of tracker-7 newer than 2d. The newest "
                 "was made at 2024-03-05 14:07:09.\n");
        QVERIFY(!run.output.contains("young.xml"));
        QCOMPARE(watch({"--newer-than", "36h"}).exitCode, 1);
    }

    void missesABackupOfTheControllerAndAFolder()
    {
        Tool::expectRun({"verify", m_folder->path(), "--controller", "tracker-9"}, 1, "",
                        "veltra4-backup: There is no good backup of tracker-9.\n");
        QCOMPARE(Tool::run({"verify", "--newer-than", "2d", "/nosuch"}).exitCode, 2);
    }

    void isNotContentWithABrokenOne()
    {
        m_folder->make("young.xml", backupOf("tracker-7", 1).replace(">example.com<", "><"));
        const Tool::Run run = watch({"--newer-than", "2d", "--json"});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.array().size(), 2);
        QCOMPARE(run.complaint,
                 "veltra4-backup: There is no good backup newer than 2d. The newest was made at "
                 "2024-03-05 14:07:09.\n");
    }

    void isNotContentWithOneThatDoesNotFit()
    {
        m_folder->make("young.xml", backupOf("tracker-7", 1));
        QCOMPARE(watch({"--newer-than", "2d", "--model", "Model 5"}).exitCode, 0);
        QCOMPARE(watch({"--newer-than", "2d", "--model", "Model 6"}).exitCode, 1);
    }
};

VELTRA4_TEST(TestToolWatch)
#include "tst_toolwatch.moc"
