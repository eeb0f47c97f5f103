#include "backup/backupschema.h"
#include "backup/fullbackup.h"
#include "hostapi/backendversions.h"
#include "simulator/archive.h"
#include "simulator/controllerstate.h"
#include "simulator/statefile.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"

#include <QDate>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <functional>
#include <memory>

namespace {

constexpr int defaultKills = 8;             // of each operation
constexpr int killsPerBlock = 20;           // a block is what the test's own time limit counts for
constexpr quint32 latestKillMs = 100;       // several rounds of anything
constexpr quint32 latestAimedKillUs = 1000; // after a file was begun, before it is finished
constexpr int longestAimMs = 2000;
constexpr int patienceMs = 60000; // for the host to start, however busy the machine is

int killsOfEach()
{
    const int number = qEnvironmentVariableIntValue("VELTRA4_KILLS");
    return number > 0 ? number : defaultKills;
}

/// Without passwords, so that every row can be edited.
ControllerState unlockedState()
{
    ControllerState state = ControllerState::sample();
    for (Configuration &configuration : state.configurations) {
        configuration.password = {};
    }
    return state;
}

bool isWholeBackup(const QString &path, const ControllerState &state)
{
    BackendVersions versions;
    FullBackup backup(nullptr, &versions);
    return BackupSchema::validate(path) == BackupSchema::Verdict::Backup
        && backup.readFromFile(path) && backup.configData == TransferFiles::wholeArchive(state);
}

bool isWholeSave(const QString &path, const ControllerState &state)
{
    QVector<Archive::Item> items;
    QString error;
    if (!Archive::unpack(TransferFiles::contentsOf(path), &items, &error)) {
        return false;
    }
    return std::equal(items.cbegin(), items.cend(), state.configurations.cbegin(),
                      state.configurations.cend(),
                      [](const Archive::Item &item, const Configuration &configuration) {
                          return item.data == configuration.data;
                      });
}

} // namespace

/// Kills the host at random moments of what writes files, each operation as often as VELTRA4_KILLS
/// says, and starts it again where it was killed.
class TestKills : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const int each = killsOfEach();
        qInfo("%d kills of each operation", each);
    }

    void aSaveLeavesTheOldFileOrTheNew_data() { addBlocks(); }

    void aSaveLeavesTheOldFileOrTheNew()
    {
        start();
        const QString path = m_home->filePath("saved.dat");
        QVector<Archive::Item> items;
        for (const Configuration &configuration : m_state.configurations) {
            items << TransferFiles::item(configuration);
        }
        TransferFiles::write(path, Archive::pack(items));
        killAgainAndAgain("save", "saved.dat", [&](bool *isInTheMiddle) {
            *isInTheMiddle = !isWholeSave(path, m_state); // it is open only now and then
            if (*isInTheMiddle) {
                QVERIFY(isWholeSave(path + ".bak", m_state));
                // The user takes the older one, before the next save makes the half one the older
                // one.
                QFile::remove(path);
                QVERIFY(QFile::rename(path + ".bak", path));
            }
        });
    }

    void aBackupByHandIsWholeOrNotThere_data() { addBlocks(); }

    void aBackupByHandIsWholeOrNotThere()
    {
        start();
        const QString path = m_home->filePath("all.xml");
        bool wasThere = false;
        killAgainAndAgain("manual", "all.xml", [&](bool * /*isInTheMiddle*/) {
            const bool isThere = QFile::exists(path);
            QVERIFY(isThere || !wasThere); // the one before it is not lost
            QVERIFY(!isThere || isWholeBackup(path, m_state));
            wasThere = isThere;
        });
    }

    void anAutomaticBackupIsWholeOrNotThere_data() { addBlocks(); }

    void anAutomaticBackupIsWholeOrNotThere()
    {
        start();
        const QString folder = ".ZOR/VELTRA4/v4.12.3/backup";
        QVERIFY(QDir(m_home->path()).mkpath(folder));
        const QDir directory(m_home->filePath(folder));
        const QString host = QString::fromLatin1(m_state.hostName) + ".xml";
        const QString today =
            QStringLiteral("backup_%1_").arg(QDate::currentDate().toString(Qt::ISODate)) + host;
        const auto writeOldest = [&] {
            TransferFiles::write(directory.filePath("backup_2024-01-01_" + host), "the oldest");
        };
        const QString newestOlder = TransferFiles::write(
            directory.filePath("backup_2024-02-01_" + host), "the newest older");
        writeOldest();
        killAgainAndAgain("automatic", folder + "/" + today, [&](bool * /*isInTheMiddle*/) {
            const QString path = directory.filePath(today);
            QVERIFY(!QFile::exists(path) || isWholeBackup(path, m_state));
            QCOMPARE(TransferFiles::contentsOf(newestOlder), "the newest older");
            writeOldest();
        });
    }

    void theControllersStateIsWhole_data() { addBlocks(); }

    void theControllersStateIsWhole()
    {
        start();
        killAgainAndAgain("edit", "state.json", [](bool * /*isInTheMiddle*/) {});
    }

private:
    static void addBlocks()
    {
        QTest::addColumn<int>("kills");
        for (int done = 0; done < killsOfEach(); done += killsPerBlock) {
            const int kills = qMin(killsPerBlock, killsOfEach() - done);
            QTest::addRow("kills %d to %d", done + 1, done + kills) << kills;
        }
    }

    // A new home, with a controller that has never been killed.
    void start()
    {
        m_home = std::make_unique<QTemporaryDir>();
        QString error;
        QVERIFY2(StateFile::save(m_home->filePath("state.json"), m_state, &error),
                 qPrintable(error));
    }

    // Looks each time at what the operation has left of that file, and of the controller's state;
    // @p look may know better whether it was in the middle of the file.
    void killAgainAndAgain(const QString &operation, const QString &fileName,
                           const std::function<void(bool *isInTheMiddle)> &look)
    {
        QFETCH(const int, kills);
        int inTheMiddle = 0;
        for (int i = 0; i < kills && !QTest::currentTestFailed(); ++i) {
            bool isInTheMiddle = killDuring(operation, fileName);
            checkState();
            look(&isInTheMiddle);
            inTheMiddle += isInTheMiddle ? 1 : 0;
        }
        qInfo("%d kills, %d of them in the middle of the file", kills, inTheMiddle);
    }

    // While the operation goes on that writes fileName. Returns whether it was just being written.
    bool killDuring(const QString &operation, const QString &fileName)
    {
        QProcess victim;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", m_home->path());
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        victim.setProcessEnvironment(environment);
        victim.start(VELTRA4_VICTIM_PATH, {operation});
        const bool isAtWork = victim.waitForReadyRead(patienceMs);
        waitForTheMoment(victim.processId(), fileName);
        // Stopped first, so that there is time to look.
        ::kill(pid_t(victim.processId()), SIGSTOP);
        const bool isInTheMiddle = isWriting(victim.processId(), fileName);
        if (!isAtWork || victim.state() != QProcess::Running) {
            QTest::qFail(victim.readAllStandardError().constData(), __FILE__, __LINE__);
        }
        victim.kill();
        victim.waitForFinished(patienceMs);
        return isInTheMiddle;
    }

    // Any moment; every other time one at which the file is being written, which is soon over.
    void waitForTheMoment(qint64 process, const QString &fileName)
    {
        QThread::msleep(m_random.bounded(latestKillMs));
        if (m_random.bounded(2U) == 0) {
            return;
        }
        QElapsedTimer timer;
        timer.start();
        while (!isWriting(process, fileName) && timer.elapsed() < longestAimMs) {
            QThread::usleep(50);
        }
        QThread::usleep(m_random.bounded(latestAimedKillUs));
    }

    // What is written has no name until it is whole, or another one where the disk cannot do that.
    bool isWriting(qint64 process, const QString &fileName) const
    {
        const QFileInfo file(m_home->filePath(fileName));
        const QFileInfoList open = QDir(QStringLiteral("/proc/%1/fd").arg(process)).entryInfoList();
        return std::any_of(open.cbegin(), open.cend(), [&file](const QFileInfo &descriptor) {
            const QString path = descriptor.symLinkTarget();
            return path.startsWith(file.path() + "/#") || path.startsWith(file.filePath());
        });
    }

    // Whatever was under way, the controller starts again with all its configurations.
    void checkState()
    {
        ControllerState state;
        QString error;
        QVERIFY2(StateFile::load(m_home->filePath("state.json"), &state, &error),
                 qPrintable(error));
        QCOMPARE(state.configurations.size(), m_state.configurations.size());
        for (int i = 0; i < state.configurations.size(); ++i) {
            QCOMPARE(state.configurations.at(i).identifier,
                     m_state.configurations.at(i).identifier);
            QCOMPARE(state.configurations.at(i).data, m_state.configurations.at(i).data);
        }
    }

    std::unique_ptr<QTemporaryDir> m_home;
    const ControllerState m_state = unlockedState();
    QRandomGenerator m_random = QRandomGenerator::securelySeeded();
};

VELTRA4_TEST(TestKills)
#include "tst_kills.moc"
