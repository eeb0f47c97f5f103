#include "backup/fullbackup.h"
#include "channel/controller.h"
#include "tests/support/testmain.h"
#include "tests/transfer/backuptesting.h"
#include "transfer/manualbackup.h"

#include <QDateTime>
#include <QDir>
#include <QLineEdit>
#include <QTest>
#include <QThread>

namespace {

// Neither an extension nor within Latin-1: it is used as it stands.
const QString fileName = QStringLiteral("\u6e2c\u5b9a");

const QStringList nameQueries{"queryString system controller_serial", "queryString system model"};

struct ManualBackupStage : BackupStage
{
    void run() { backUpByHand(Controller(&channel), &versions, dialog); }

    void choose(const QString &name) { driver.expectFileDialog("Backup all settings", name); }

    /// Runs with a file chosen, up to the box.
    void runInto(const QString &file, QMessageBox::Icon icon, const QString &title,
                 const QString &text)
    {
        choose(file);
        driver.expectBox(TransferTesting::okBox(icon, title, text, dialog));
        run();
    }

    /// The path that is proposed; the choice is cancelled.
    QString proposal()
    {
        QString proposed;
        driver.expectFileDialog("Backup all settings", {}, [&proposed](QFileDialog *chooser) {
            proposed = chooser->directory().path() + '/'
                + chooser->findChild<QLineEdit *>("fileNameEdit")->text();
        });
        run();
        return proposed;
    }

    /// Answers a query, or lets it fail where there is no answer.
    void script(const char *query, const QByteArray &answer)
    {
        if (answer.isNull()) {
            channel.fail(query);
        } else {
            channel.answer(query, answer);
        }
    }

    QStringList files() const { return QDir(folder.path()).entryList(QDir::Files); }
};

} // namespace

class TestManualBackup : public QObject
{
    Q_OBJECT

private slots:
    void proposesANameThatTellsTheController_data()
    {
        QTest::addColumn<QByteArray>("model");
        QTest::addColumn<QByteArray>("serial");
        QTest::addColumn<QByteArray>("description");
        const auto row = [](const char *name, const QByteArray &model, const QByteArray &serial,
                            const QByteArray &description) {
            QTest::newRow(name) << model << serial << description;
        };
        const QByteArray fails; // null, other than an empty answer
        row("XQU_M_S00001234", "2", "1234", "\"Model 5\"");
        row("XQU_M_S123456789", "2", "123456789", "\"Model 5\"");
        row("XQU_M_S00000000", "2", fails, "\"Model 5\"");
        row("Model_5_Pro_1234", "5", "1234", "Model 5 \"Pro\"");
        row("Model_5_Pro_", "5", fails, "Model 5 \"Pro\"");
        row("XQU_1234", "5", "1234", fails);
        row("_1234", "5", "1234", "\"\"");
        row("Unknown_1234", fails, "1234", "Unknown");
        row("Blank_1234", "2 ", "1234", "Blank");
        row("Longer_1234", "22", "1234", "Longer");
        row("XQU_", fails, fails, fails);
    }

    void proposesANameThatTellsTheController()
    {
        QFETCH(const QByteArray, model);
        QFETCH(const QByteArray, serial);
        QFETCH(const QByteArray, description);
        ManualBackupStage f;
        f.script("system model", model);
        f.script("system controller_serial", serial);
        f.script("system model_description", description);
        const QString start = QDir::homePath() + '/' + QTest::currentDataTag() + "_backup_";
        const QString path = f.proposal();
        QVERIFY2(path.startsWith(start), qPrintable(path));
        QCOMPARE(f.channel.trace(),
                 model == "2" ? nameQueries
                              : nameQueries + QStringList("queryString system model_description"));
    }

    // However long the controller takes to answer.
    void theProposalEndsWithTheTimeAfterTheQueries()
    {
        ManualBackupStage f;
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        f.channel.whenSent("system model", [before] {
            while (QDateTime::currentSecsSinceEpoch() <= before) {
                QThread::msleep(10);
            }
        });
        const QString path = f.proposal();
        const QDateTime after = QDateTime::currentDateTime();
        const QString prefix = QDir::homePath() + "/XQU_M_S00001234_backup_";
        QVERIFY2(path.startsWith(prefix), qPrintable(path));
        const QDateTime time =
            QDateTime::fromString(path.mid(prefix.size()), "yyyy-MM-dd_HHmmss'.xml'");
        QVERIFY2(time.toSecsSinceEpoch() > before && time <= after, qPrintable(path));
    }

    void asksForTheFileOnBehalfOfTheDialog()
    {
        ManualBackupStage f;
        f.driver.expectFileDialog("Backup all settings", {}, [&f](QFileDialog *chooser) {
            QCOMPARE(chooser->parentWidget(), f.dialog);
            QCOMPARE(chooser->nameFilters(), QStringList("XML files (*.xml *.*)"));
            QCOMPARE(chooser->acceptMode(), QFileDialog::AcceptSave);
            QVERIFY(!QGuiApplication::overrideCursor());
        });
        f.run();
        QCOMPARE(f.channel.trace(), nameQueries); // cancelled, it ends
    }

    void writesTheWholeController()
    {
        ManualBackupStage f;
        f.runInto(f.path(fileName), QMessageBox::Information, "Success", "Backup created!");
        QCOMPARE(f.channel.trace(), nameQueries + BackupStage::collection());
        QCOMPARE(f.files(), QStringList(fileName));

        FullBackup written(&f.channel, &f.versions);
        QVERIFY(written.readFromFile(f.path(fileName)));
        QCOMPARE(written.name, "lab");
        QCOMPARE(written.serial, "1234");
        QCOMPARE(written.systemModel, "Model 5");
        QCOMPARE(written.slaves, QStringList("slave1"));
        QCOMPARE(written.activeConfig, "id1");
        QCOMPARE(written.configData, QByteArray("one two"));
    }

    void aFailedCollectionWritesNoFile()
    {
        // The second one breaks the connection.
        for (const char *query : {"system net", "system controller_embedded"}) {
            ManualBackupStage f;
            f.channel.fail(query);
            f.runInto(f.path(fileName), QMessageBox::Critical, "Invalid backup",
                      "Error while receiving backup information!");
            const QStringList trace = f.channel.trace();
            QVERIFY2(trace.at(trace.size() - 2).endsWith(query), query);
            QCOMPARE(trace.last(), "sendCommand system download cancel");
            QCOMPARE(f.files(), QStringList());
        }
    }

    void aFileThatCannotBeWrittenIsTold()
    {
        ManualBackupStage f;
        const QString nowhere = f.path("missing/backup.xml");
        f.runInto(nowhere, QMessageBox::Critical, "Invalid backup file",
                  "Error while saving backup to\nfile '" + nowhere + "'!");
        QCOMPARE(f.channel.trace().last(), "queryString system download 2");
    }

    void theWaitCursorIsShownWhileItIsCollected()
    {
        ManualBackupStage f;
        f.noteCursorAt("system net");
        f.noteCursorAt("system download 2");
        f.runInto(f.path(fileName), QMessageBox::Information, "Success", "Backup created!");
        QCOMPARE(f.cursors, QList<bool>({true, true}));
    }

    void theDialogMayVanishWhileTheBoxIsOpen()
    {
        for (const char *failing : {"nothing", "system net"}) {
            ManualBackupStage f;
            f.channel.fail(failing);
            f.choose(f.path(fileName));
            f.expectDestruction();
            f.run();
            QVERIFY(!f.parent);
        }
    }
};

VELTRA4_TEST(TestManualBackup)
#include "tst_manualbackup.moc"
