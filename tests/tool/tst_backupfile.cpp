#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tool/backupfile.h"
#include "tool/judgement.h"

#include <QDateTime>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <thread>

namespace {

/// Somebody who goes on writing to a file, as long as it lives.
class Writer
{
public:
    explicit Writer(const QString &path)
        : m_thread([this, path] { write(path); })
    {
    }
    ~Writer()
    {
        m_isEnough = true;
        m_thread.join();
    }
    Q_DISABLE_COPY_MOVE(Writer)

private:
    void write(const QString &path) const
    {
        QDateTime time = QDateTime::currentDateTime();
        QFile file(path);
        file.open(QIODevice::Append);
        while (!m_isEnough) {
            time = time.addSecs(1);
            file.setFileTime(time, QFileDevice::FileModificationTime);
        }
    }

    std::atomic<bool> m_isEnough{false};
    std::thread m_thread;
};

} // namespace

class TestBackupFile : public QObject
{
    Q_OBJECT

private slots:
    void noticesThatTheFileChangesMeanwhile()
    {
        const QString path = SampleBackup::makeFile(m_folder.path(), SampleBackup::document());
        const Writer writer(path);
        Judgement judgement = judge(path);
        while (!judgement.refusal) { // the writer may come too late
            judgement = judge(path);
        }
        QCOMPARE(judgement.refusal->text, QString("The file changed while it was read."));
        QCOMPARE(judgement.refusal->stage, Refusal::Stage::File);
        QVERIFY(judgement.fields.isEmpty());
    }

    // By far more than there are threads, every third of them broken.
    void judgesManyInTheirOrder()
    {
        const QString good = SampleBackup::makeFile(m_folder.path(), SampleBackup::document());
        const QString broken = SampleBackup::makeFile(
            m_folder.path(), SampleBackup::documentWith("<domain>", "<a/><domain>"));
        QStringList paths;
        for (int i = 0; i < 300; ++i) {
            paths << (i % 3 == 0 ? broken : good);
        }
        const QVector<Judgement> judgements = judgeAll(paths);
        QCOMPARE(judgements.size(), paths.size());
        for (int i = 0; i < paths.size(); ++i) {
            QCOMPARE(judgements.at(i).path, paths.at(i));
            QCOMPARE(judgements.at(i).refusal.has_value(), i % 3 == 0);
            QCOMPARE(judgements.at(i).fields.isEmpty(), i % 3 == 0);
        }
    }

private:
    const QTemporaryDir m_folder;
};

VELTRA4_TEST(TestBackupFile)
#include "tst_backupfile.moc"
