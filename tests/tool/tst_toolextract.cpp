#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/tool/toolrun.h"

#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

#include <sys/resource.h>

using SampleBackup::contentOf;

class TestToolExtract : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_backup = Tool::makeFile(m_folder->filePath("tracker.lab.xml"), SampleBackup::document());
        m_target = m_folder->filePath("tracker.lab.dat");
    }

    void writesTheDataBesideTheBackup()
    {
        const Tool::Run run = Tool::run({"extract", m_backup});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.complaint, QString());
        QVERIFY2(run.output.startsWith(m_target + ": 19 bytes, SHA-256 "), qPrintable(run.output));
        QCOMPARE(contentOf(m_target), m_data);
        QCOMPARE(contentOf(m_backup), SampleBackup::document());
    }

    void writesToAnotherPlace()
    {
        const QString target = m_folder->filePath("b");
        QCOMPARE(Tool::run({"extract", m_backup, target}).exitCode, 0);
        QCOMPARE(contentOf(target), m_data);
        QVERIFY(!QFile::exists(m_target));
    }

    void tellsProgramsTheSame()
    {
        const QJsonObject told = Tool::run({"extract", "--json", m_backup}).object();
        const QByteArray hash =
            QCryptographicHash::hash(m_data, QCryptographicHash::Sha256).toHex();
        const QJsonObject expected{{"command", "extract"},
                                   {"file", m_backup},
                                   {"written", m_target},
                                   {"size", m_data.size()},
                                   {"sha256", QString(hash)}};
        QCOMPARE(told, expected);
    }

    void replacesNothing()
    {
        Tool::makeFile(m_target, "mine");
        const Tool::Run run = Tool::run({"extract", m_backup});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.output, QString());
        QCOMPARE(run.complaint, m_target + ": This file exists already; --force replaces it.\n");
        QCOMPARE(contentOf(m_target), QByteArray("mine"));
        const QJsonObject told = Tool::run({"extract", "--json", m_backup}).object();
        QCOMPARE(told["problem"].toObject()["file"].toString(), m_target);
        QVERIFY(!told.contains("written"));
    }

    void replacesWhenItIsTold()
    {
        Tool::makeFile(m_target, "mine");
        QCOMPARE(Tool::run({"extract", "--force", m_backup}).exitCode, 0);
        QCOMPARE(contentOf(m_target), m_data);
    }

    void doesNotReplaceTheBackup()
    {
        QVERIFY(QFile::link(m_backup, m_target));
        const Tool::Run run = Tool::run({"extract", "--force", m_backup});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.complaint, m_target + ": This is the backup itself.\n");
        QCOMPARE(contentOf(m_backup), SampleBackup::document());
    }

    void refusesWhatARestoreRefuses()
    {
        Tool::makeFile(m_backup, SampleBackup::documentWith(">example.com<", "><"));
        const Tool::Run run = Tool::run({"extract", m_backup});
        QCOMPARE(run.exitCode, 1);
        QVERIFY(
            run.complaint.startsWith(m_backup + ": line 21, column 19: ZORBackupData/domain: "));
        QCOMPARE(files(), QStringList{"tracker.lab.xml"});
        QCOMPARE(Tool::run({"extract", "/nosuch.xml"}).exitCode, 2);
    }

    void refusesABackupWithoutConfigurations()
    {
        Tool::makeFile(m_backup, SampleBackup::documentWith("AAH+/yBjb25maWd1cmF0aW9ucw==", ""));
        const Tool::Run run = Tool::run({"extract", m_backup});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.complaint, m_backup + ": It holds no configurations.\n");
        QCOMPARE(files(), QStringList{"tracker.lab.xml"});
    }

    void refusesAFolder()
    {
        const Tool::Run run = Tool::run({"extract", m_backup, m_folder->path()});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.complaint, m_folder->path() + ": This is a folder.\n");
    }

    void leavesNothingOnAFullDisk()
    {
        const Tool::Run run = runOnAFullDisk({});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.output, QString());
        QCOMPARE(run.complaint, m_target + ": File too large.\n");
        QCOMPARE(files(), QStringList{"tracker.lab.xml"});
    }

    void leavesTheOldFileOnAFullDisk()
    {
        Tool::makeFile(m_target, "mine");
        QCOMPARE(runOnAFullDisk({"--force"}).exitCode, 2);
        QCOMPARE(contentOf(m_target), QByteArray("mine"));
        QCOMPARE(files(), (QStringList{"tracker.lab.dat", "tracker.lab.xml"}));
    }

private:
    // No file can grow beyond some bytes, which the data are.
    Tool::Run runOnAFullDisk(const QStringList &more) const
    {
        const QByteArray data = QByteArray(100000, 'a').toBase64();
        Tool::makeFile(m_backup, SampleBackup::documentWith("AAH+/yBjb25maWd1cmF0aW9ucw==", data));
        return Tool::run(QStringList{"extract", m_backup} + more, [] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{50000, 50000};
            setrlimit(RLIMIT_FSIZE, &limit);
        });
    }

    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_backup;
    QString m_target;
    const QByteArray m_data = QByteArray("\x00\x01\xfe\xff configurations", 19);
};

VELTRA4_TEST(TestToolExtract)
#include "tst_toolextract.moc"
