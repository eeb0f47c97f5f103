#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QTest>

#include <csignal>

#include <sys/resource.h>

using SampleBackup::contentOf;
using SampleBackup::documentWith;
using Tool::expectRun;

class TestToolExtract : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Tool::Folder> m_folder;
    QString m_backup;
    QString m_target;
    const QByteArray m_data = QByteArray("\x00\x01\xfe\xff configurations", 19);
    const QString m_hash = QCryptographicHash::hash(m_data, QCryptographicHash::Sha256).toHex();

    // No file can grow beyond some bytes, which the data are.
    Tool::Run runOnAFullDisk(const QStringList &more) const
    {
        const QByteArray data = QByteArray(100000, 'a').toBase64();
        Tool::makeFile(m_backup, documentWith("AAH+/yBjb25maWd1cmF0aW9ucw==", data));
        return Tool::run(QStringList{"extract", m_backup} + more, [] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{50000, 50000};
            setrlimit(RLIMIT_FSIZE, &limit);
        });
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<Tool::Folder>();
        m_backup = m_folder->make("tracker.lab.xml", SampleBackup::document());
        m_target = m_folder->path("tracker.lab.dat");
    }

    void writesTheDataBesideTheBackup()
    {
        expectRun({"extract", m_backup}, 0,
                  m_target + ": 19 bytes, SHA-256 " + m_hash
                      + "\nRestore in the list of configurations opens this file.\n");
        QCOMPARE(contentOf(m_target), m_data);
        QCOMPARE(contentOf(m_backup), SampleBackup::document());
    }

    void writesToAnotherPlaceAndTellsProgramsTheSame()
    {
        const QString target = m_folder->path("b");
        const QJsonObject told = Tool::run({"extract", "--json", m_backup, target}).object();
        const QJsonObject expected{{"command", "extract"},
                                   {"file", m_backup},
                                   {"written", target},
                                   {"size", m_data.size()},
                                   {"sha256", m_hash}};
        QCOMPARE(told, expected);
        QCOMPARE(contentOf(target), m_data);
        QVERIFY(!QFile::exists(m_target));
    }

    void replacesNothingUnlessItIsTold()
    {
        Tool::makeFile(m_target, "mine");
        expectRun({"extract", m_backup}, 2, "",
                  m_target + ": This file exists already; --force replaces it.\n");
        const QJsonObject told = Tool::run({"extract", "--json", m_backup}).object();
        QCOMPARE(told["problem"]["file"].toString(), m_target);
        QVERIFY(!told.contains("written"));
        QCOMPARE(contentOf(m_target), "mine");
        QCOMPARE(Tool::run({"extract", "--force", m_backup}).exitCode, 0);
        QCOMPARE(contentOf(m_target), m_data);
    }

    void replacesNeitherTheBackupNorAFolderNorALink()
    {
        QVERIFY(QFile::link(m_backup, m_target));
        expectRun({"extract", "--force", m_backup}, 2, "",
                  m_target + ": This is the backup itself.\n");
        QCOMPARE(contentOf(m_backup), SampleBackup::document());
        expectRun({"extract", m_backup, m_folder->path()}, 2, "",
                  m_folder->path() + ": This is a folder.\n");
        const QString toNowhere = m_folder->path("link");
        QVERIFY(QFile::link("/nowhere", toNowhere));
        QCOMPARE(Tool::run({"extract", m_backup, toNowhere}).exitCode, 2);
    }

    void refusesWhatARestoreRefusesAndWhatHoldsNoConfigurations()
    {
        Tool::makeFile(m_backup, documentWith(">example.com<", "><"));
        const Tool::Run run = Tool::run({"extract", m_backup});
        QCOMPARE(run.exitCode, 1);
        QVERIFY(
            run.complaint.startsWith(m_backup + ": line 21, column 19: ZORBackupData/domain: "));
        Tool::makeFile(m_backup, documentWith("AAH+/yBjb25maWd1cmF0aW9ucw==", ""));
        expectRun({"extract", m_backup}, 1, "", m_backup + ": It holds no configurations.\n");
        QCOMPARE(m_folder->files(), QStringList{"tracker.lab.xml"});
        QCOMPARE(Tool::run({"extract", "/nosuch.xml"}).exitCode, 2);
    }

    void leavesOnAFullDiskWhatThereWas()
    {
        const Tool::Run run = runOnAFullDisk({});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.output, "");
        QCOMPARE(run.complaint, m_target + ": File too large.\n");
        QCOMPARE(m_folder->files(), QStringList{"tracker.lab.xml"});
        Tool::makeFile(m_target, "mine");
        QCOMPARE(runOnAFullDisk({"--force"}).exitCode, 2);
        QCOMPARE(contentOf(m_target), "mine");
        QCOMPARE(m_folder->files(), QStringList({"tracker.lab.dat", "tracker.lab.xml"}));
    }
};

VELTRA4_TEST(TestToolExtract)
#include "tst_toolextract.moc"
