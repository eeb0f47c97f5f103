#include "backup/fullbackup.h"
#include "channel/controller.h"
#include "tests/support/modaldriver.h"
#include "tests/support/testmain.h"
#include "tests/transfer/backuptesting.h"
#include "tests/transfer/transfertesting.h"
#include "transfer/manualbackup.h"

#include <QDateTime>
#include <QDir>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace BackupTesting;
using namespace TransferTesting;

class TestManualBackup : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_channel = std::make_unique<ScriptedChannel>();
        scriptController(m_channel.get());
        m_versions = askedVersions();
        m_dialog = std::make_unique<QWidget>();
        m_driver = std::make_unique<ModalDriver>();
    }

    void cleanup()
    {
        m_driver.reset();
        m_dialog.reset();
        m_channel.reset();
        m_folder.reset();
        QCOMPARE(takeCursors(), 0);
    }

    // However long the controller takes to answer.
    void proposesTheTimeAfterTheQueries()
    {
        const auto stamp = [] {
            return QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd_HHmmss"));
        };
        const QString before = stamp();
        m_channel->whenSent("system model", [&] {
            while (stamp() == before) {
                QThread::msleep(10);
            }
        });
        const QString path = proposal();
        QVERIFY2(path.right(21).left(17) > before, qPrintable(path));
    }

    void proposesANameThatTellsTheController_data()
    {
        QTest::addColumn<QByteArray>("model");
        QTest::addColumn<QByteArray>("serial");
        QTest::addColumn<QByteArray>("description");
        QTest::addColumn<QString>("name");
        const QByteArray fails; // null, other than an empty answer
        const QByteArray described = "\"Model 5\"";
        QTest::newRow("model 2") << QByteArray("2") << QByteArray("1234") << described
                                 << "XQU_M_S00001234";
        QTest::newRow("model 2, long serial")
            << QByteArray("2") << QByteArray("123456789") << described << "XQU_M_S123456789";
        QTest::newRow("model 2, no serial")
            << QByteArray("2") << fails << described << "XQU_M_S00000000";
        QTest::newRow("another model") << QByteArray("5") << QByteArray("1234")
                                       << QByteArray("Model 5 \"Pro\"") << "Model_5_Pro_1234";
        QTest::newRow("another model, no serial")
            << QByteArray("5") << fails << QByteArray("Model 5 \"Pro\"") << "Model_5_Pro_";
        QTest::newRow("another model, not described")
            << QByteArray("5") << QByteArray("1234") << fails << "XQU_1234";
        QTest::newRow("another model, empty description")
            << QByteArray("5") << QByteArray("1234") << QByteArray("\"\"") << "_1234";
        QTest::newRow("unknown model")
            << fails << QByteArray("1234") << described << "Model_5_1234";
        QTest::newRow("unknown model, not described")
            << fails << QByteArray("1234") << fails << "XQU_1234";
        QTest::newRow("model 2 with a blank")
            << QByteArray("2 ") << QByteArray("1234") << described << "Model_5_1234";
        QTest::newRow("model 22") << QByteArray("22") << QByteArray("1234") << described
                                  << "Model_5_1234";
        QTest::newRow("nothing known") << fails << fails << fails << "XQU_";
    }

    void proposesANameThatTellsTheController()
    {
        QFETCH(const QByteArray, model);
        QFETCH(const QByteArray, serial);
        QFETCH(const QByteArray, description);
        QFETCH(const QString, name);
        const auto script = [this](const char *query, const QByteArray &answer) {
            if (answer.isNull()) {
                m_channel->fail(query);
            } else {
                m_channel->answer(query, answer);
            }
        };
        script("system model", model);
        script("system controller_serial", serial);
        script("system model_description", description);
        const QString path = proposal();
        QVERIFY2(path.startsWith(QDir::homePath() + '/' + name + "_backup_"), qPrintable(path));

        QStringList queries{"queryString system controller_serial", "queryString system model"};
        if (model != "2") {
            queries << "queryString system model_description";
        }
        QCOMPARE(m_channel->trace(), queries);
    }

    void theProposalEndsWithTheTime()
    {
        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        const QString path = proposal();
        const QDateTime after = QDateTime::currentDateTime();
        const QString prefix = QDir::homePath() + "/XQU_M_S00001234_backup_";
        QVERIFY(path.startsWith(prefix));
        const QDateTime time =
            QDateTime::fromString(path.mid(prefix.size()), "yyyy-MM-dd_HHmmss'.xml'");
        QVERIFY2(time.isValid() && before < time && time <= after, qPrintable(path));
    }

    void asksForTheFileOnBehalfOfTheDialog()
    {
        m_driver->expectFileDialog("Backup all settings", QString(), [this](QFileDialog *dialog) {
            QCOMPARE(dialog->parentWidget(), m_dialog.get());
            QCOMPARE(dialog->nameFilters(), QStringList("XML files (*.xml *.*)"));
            QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
            QVERIFY(!QGuiApplication::overrideCursor());
        });
        run();
    }

    void aCancelledChoiceEndsIt()
    {
        choose(QString());
        run();
        QCOMPARE(m_channel->trace(),
                 QStringList({"queryString system controller_serial", "queryString system model"}));
    }

    void writesTheWholeController()
    {
        choose(fileName());
        expectSuccess();
        run();

        FaultyBackup rules(0, false);
        rules.succeeds("queryString system controller_serial");
        rules.succeeds("queryString system model");
        QVERIFY(rules.collects());
        QCOMPARE(m_channel->trace(), rules.trace);

        FullBackup written(m_channel.get(), &m_versions);
        QVERIFY(written.readFromFile(fileName()));
        QCOMPARE(written.name, QString("lab"));
        QCOMPARE(written.serial, QString("1234"));
        QCOMPARE(written.systemModel, QString("Model 5"));
        QCOMPARE(written.slaves, QStringList("slave1"));
        QCOMPARE(written.activeConfig, QString("id1"));
        QCOMPARE(written.configData, QByteArray("one two"));
    }

    void theChosenNameIsUsedAsItStands_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("no extension") << "backup";
        QTest::newRow("another extension") << "backup.txt";
        QTest::newRow("outside Latin-1") << QStringLiteral("\u6e2c\u5b9a.xml");
    }

    void theChosenNameIsUsedAsItStands()
    {
        QFETCH(const QString, name);
        choose(m_folder->filePath(name));
        expectSuccess();
        run();
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList(name));
    }

    void everySingleCommandMayFail_data()
    {
        QTest::addColumn<bool>("lasting");
        QTest::newRow("once") << false;
        QTest::newRow("from then on") << true;
    }

    void everySingleCommandMayFail()
    {
        QFETCH(const bool, lasting);
        int failAt = 0;
        for (bool isFaultMet = true; isFaultMet;) {
            cleanup();
            init();
            FaultyBackup rules(++failAt, lasting);
            rules.succeeds("queryString system controller_serial");
            if (!rules.succeeds("queryString system model")) {
                rules.succeeds("queryString system model_description");
            }
            const bool isCollected = rules.collects();
            choose(fileName());
            if (isCollected) {
                expectSuccess();
            } else {
                rules.succeeds("sendCommand system download cancel");
                expectCollectFailure();
            }
            m_channel->failNth(failAt, lasting);
            run();
            m_driver->verify();
            QCOMPARE(m_channel->trace(), rules.trace);
            QCOMPARE(QFile::exists(fileName()), isCollected);
            QCOMPARE(takeCursors(), 0);
            isFaultMet = rules.isFaultMet;
        }
        QCOMPARE(failAt - 1, 19);
    }

    void aLostConnectionIsAFailedCollection()
    {
        m_channel->fail("system controller_embedded");
        choose(fileName());
        expectCollectFailure();
        run();
        QCOMPARE(m_channel->trace().mid(m_channel->trace().size() - 3),
                 QStringList({"setTimeout 0 3000 1", "queryBool system controller_embedded",
                              "sendCommand system download cancel"}));
    }

    void aFileThatCannotBeWrittenIsTold()
    {
        const QString nowhere = m_folder->filePath("missing/backup.xml");
        choose(nowhere);
        expectBox(QMessageBox::Critical, "Invalid backup file",
                  "Error while saving backup to\nfile '" + nowhere + "'!");
        run();
        QCOMPARE(m_channel->trace().last(), QString("queryString system download 2"));
    }

    void aFullDiskIsTold()
    {
        choose(fileName());
        expectBox(QMessageBox::Critical, "Invalid backup file",
                  "Error while saving backup to\nfile '" + fileName() + "'!");
        {
            const FileSizeLimit full(100);
            run();
        }
        QCOMPARE(m_channel->trace().last(), QString("queryString system download 2"));
        QVERIFY(!QFile::exists(fileName()));
    }

    void theWaitCursorLastsUntilTheBox_data()
    {
        QTest::addColumn<QByteArray>("failing");
        QTest::newRow("success") << QByteArray();
        QTest::newRow("failure") << QByteArray("system download 2");
        QTest::newRow("lost connection") << QByteArray("system controller_embedded");
    }

    void theWaitCursorLastsUntilTheBox()
    {
        QFETCH(const QByteArray, failing);
        if (!failing.isEmpty()) {
            m_channel->fail(failing);
        }
        bool isWaitingWhileCollecting = false;
        m_channel->whenSent("system net", [&] { isWaitingWhileCollecting = isWaiting(); });
        bool isRestored = false;
        choose(fileName());
        m_driver->expectDialog(QString(), [&isRestored](QDialog *box) {
            isRestored = QGuiApplication::overrideCursor() == nullptr;
            box->accept();
        });
        run();
        QVERIFY(isWaitingWhileCollecting);
        QVERIFY(isRestored);
    }

    void theDialogMayVanishWhileTheBoxIsOpen_data()
    {
        QTest::addColumn<bool>("isSuccess");
        QTest::newRow("success") << true;
        QTest::newRow("failure") << false;
    }

    void theDialogMayVanishWhileTheBoxIsOpen()
    {
        QFETCH(const bool, isSuccess);
        if (!isSuccess) {
            m_channel->fail("system net");
        }
        choose(fileName());
        m_driver->expectDialog(QString(), [this](QDialog *) { m_dialog.reset(); });
        run();
        QVERIFY(!m_dialog);
    }

private:
    QString fileName() const { return m_folder->filePath("backup.xml"); }
    void run() { backUpByHand(Controller(m_channel.get()), &m_versions, m_dialog.get()); }

    // The path that is proposed; the choice is cancelled.
    QString proposal()
    {
        QString path;
        m_driver->expectFileDialog("Backup all settings", QString(), [&path](QFileDialog *dialog) {
            path = dialog->directory().path() + '/'
                + dialog->findChild<QLineEdit *>("fileNameEdit")->text();
        });
        run();
        return path;
    }

    void choose(const QString &name) { m_driver->expectFileDialog("Backup all settings", name); }

    void expectBox(QMessageBox::Icon icon, const QString &title, const QString &text)
    {
        ExpectedBox box;
        box.icon = icon;
        box.title = title;
        box.text = text;
        box.parent = m_dialog.get();
        m_driver->expectBox(box);
    }

    void expectSuccess() { expectBox(QMessageBox::Information, "Success", "Backup created!"); }

    void expectCollectFailure()
    {
        expectBox(QMessageBox::Critical, "Invalid backup",
                  "Error while receiving backup information!");
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ScriptedChannel> m_channel;
    BackendVersions m_versions;
    std::unique_ptr<QWidget> m_dialog;
    std::unique_ptr<ModalDriver> m_driver;
};

VELTRA4_TEST(TestManualBackup)
#include "tst_manualbackup.moc"
