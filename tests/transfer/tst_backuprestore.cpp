#include "backup/fullbackup.h"
#include "channel/controller.h"
#include "channel/transferencoding.h"
#include "hostapi/backendversions.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/faultyrun.h"
#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"
#include "tests/transfer/transfertesting.h"
#include "transfer/backuprestore.h"

#include <QAbstractButton>
#include <QDialog>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <memory>
#include <stdexcept>

using TransferTesting::BoxCursors;
using TransferTesting::isWaiting;
using TransferTesting::takeCursors;
using TransferTesting::writeFile;

namespace {

constexpr int thrown = 10;

const QString stored = "config20240305140709123"; // the one configuration of the sample document

// One command and the time-out before it.
const QStringList embeddedQuery{"setTimeout 0 3000 1", "queryBool system controller_embedded"};

ConfigEntry entry(const QString &identifier, bool locked)
{
    ConfigEntry result;
    result.identifier = identifier;
    result.locked = locked;
    return result;
}

/// A controller that the sample document fits, with two dialogs as in the plug-in: one that
/// restores, and its parent.
struct Fixture
{
    Fixture()
    {
        channel.answer("system controller_embedded", "yes");
        channel.answerConfigurations({stored.toLatin1()}, stored.toLatin1());
        channel.answer("system import available", "2 config");
        channel.answer("system import item i01", stored.toLatin1() + " 'me' 'all'");
        channel.answer("system import item i02", "__base 'me' 'base'");
        channel.answer("cascade number_of_connected_slaves", "1");
        channel.answer("cascade connected_slave d01", "slave-a");
        channel.answer("cascade connected_slave_available slave-a", "yes");
        channel.answer("cascade connected_slave_available slave-b", "yes");
        parent = std::make_unique<QDialog>();
        dialog = new QDialog(parent.get());
    }

    /// Restores the file and gives the code back, also of an exception.
    int restore(const QString &path, const ConfigEntryList &configurations = {})
    {
        try {
            return restoreBackup(Controller(&channel), &versions, dialog, path, configurations);
        } catch (const std::runtime_error &error) {
            problem = error.what();
            return thrown;
        }
    }

    void expectOk(QMessageBox::Icon icon, QWidget *boxParent, const QString &title,
                  const QString &text)
    {
        ExpectedBox box;
        box.icon = icon;
        box.title = title;
        box.text = text;
        box.parent = boxParent;
        driver.expectBox(box);
    }

    void expectYesOrNo(QMessageBox::Icon icon, const QString &text,
                       QMessageBox::StandardButton answer)
    {
        ExpectedBox box;
        box.icon = icon;
        box.title = "Confirmation";
        box.text = text;
        box.buttons = QMessageBox::Yes | QMessageBox::No;
        box.defaultButton = QMessageBox::No;
        box.answer = answer;
        box.parent = parent.get();
        driver.expectBox(box);
    }

    void expectConfirmation(QMessageBox::StandardButton answer = QMessageBox::Yes)
    {
        expectYesOrNo(QMessageBox::Warning,
                      "Restoring this backup overwrites all settings and already existing "
                      "configurations.\n\nAny previous settings will get lost!\n\nProceed?",
                      answer);
    }

    void expectNetworkQuestion(QMessageBox::StandardButton answer = QMessageBox::Yes)
    {
        expectYesOrNo(QMessageBox::Question,
                      "Hostname and ip settings can be restored. After reboot the Model 5 might "
                      "not be reachable via network due to wrong network settings.\n\nRestore?",
                      answer);
    }

    void expectSuccess()
    {
        expectOk(QMessageBox::Information, parent.get(), "Success", "Backup restored!");
    }

    void expectFailure(const QString &path)
    {
        expectOk(QMessageBox::Critical, parent.get(), "Invalid backup file",
                 "Error while restoring from backup (" + path + ").");
    }

    ScriptedChannel channel;
    BackendVersions versions = SampleBackup::versions();
    ModalDriver driver;
    std::unique_ptr<QDialog> parent;
    QDialog *dialog; // the parent's
    QString problem;
};

QString deleted(const QString &identifier)
{
    return "sendCommandReply veltra2 config delete_config " + identifier;
}

QString imported(const QString &identifier)
{
    return "sendCommand system import 'config' '" + identifier + "'";
}

/// What the rules say about a restore of the sample document onto an embedded controller, network
/// included.
struct FaultyRestore : FaultyRun
{
    using FaultyRun::FaultyRun;

    int run()
    {
        if (!isEmbeddedKnown() || !isEmbeddedKnown()) { // asked for each answer of the fitness test
            return thrown;
        }
        isNetworkAsked = true;
        if (!isEmbeddedKnown()) {
            return thrown;
        }
        return restores() ? 0 : (succeeds("sendCommand system upload cancel"), 4);
    }

    bool restores()
    {
        const QStringList settings{"sendCommand system hostname tracker-7",
                                   "sendCommand system net 192.168.0.7/24 gw 192.168.0.1",
                                   "sendCommand system domainname example.com",
                                   "sendCommand system nameserver 192.168.0.2",
                                   "sendCommand system ntp_server 192.168.0.3",
                                   "queryInt config number_of_configs",
                                   "queryString config config t01"};
        for (const QString &command : settings) {
            if (!succeeds(command)) {
                return false;
            }
        }
        succeeds("sendCommand system upload cancel");
        succeeds(
            "sendCommand system upload 1 1 "
            + TransferEncoding::encode(QByteArray::fromBase64("AAH+/yBjb25maWd1cmF0aW9ucw==")));
        return importsItems() && restoresCascade();
    }

    bool importsItems()
    {
        if (!succeeds("queryString system import available")) {
            return false;
        }
        QStringList items;
        const QString first = succeeds("queryString system import item i01") ? stored : "2 config";
        items << first;
        if (succeeds("queryString system import item i02")) {
            items.prepend("__base");
        } else {
            items << first; // the answer before stays
        }
        for (const QString &item : qAsConst(items)) {
            if (item == stored) {
                trace << "setTimeout 0 6000 1";
                if (!succeeds(deleted(item))) {
                    return false;
                }
            }
            trace << "setTimeout 0 6000 0";
            if (!succeeds(imported(item))) {
                return false;
            }
        }
        if (items.contains(stored)) {
            succeeds("sendCommand config active_config " + stored);
        }
        trace << ScriptedChannel::announced();
        return true;
    }

    bool restoresCascade()
    {
        if (!succeeds("queryInt cascade number_of_connected_slaves")
            || !succeeds("queryString cascade connected_slave d01")) {
            return false;
        }
        check("slave-a");
        trace << "setTimeout 0 8000 1";
        if (!succeeds("sendCommandReply veltra2 cascade add_slave slave-b")) {
            return false;
        }
        check("slave-b");
        return true;
    }

    void check(const QString &slave)
    {
        trace << "setTimeout 0 1000 1";
        if (!succeeds("queryBool cascade connected_slave_available " + slave)) {
            trace << ScriptedChannel::reported("unable to reconnect slave '" + slave + "'");
            isCascadeComplete = false;
        }
    }

    bool isEmbeddedKnown()
    {
        trace << embeddedQuery.first();
        return succeeds(embeddedQuery.last());
    }

    bool isNetworkAsked = false;
    bool isCascadeComplete = true;
};

} // namespace

Q_DECLARE_METATYPE(BackendVersions)
Q_DECLARE_METATYPE(QMessageBox::StandardButton)
Q_DECLARE_METATYPE(std::function<void(Fixture &)>)

class TestBackupRestore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void init()
    {
        m_path = writeFile(m_folder.filePath("some backup.xml"), SampleBackup::document());
    }

    void cleanup() { QCOMPARE(takeCursors(), 0); }

    void theCodesAreAsAgreed()
    {
        QCOMPARE(RestoreCode::restored, 0);
        QCOMPARE(RestoreCode::notStarted, 1);
        QCOMPARE(RestoreCode::declined, 2);
        QCOMPARE(RestoreCode::unfit, 3);
        QCOMPARE(RestoreCode::failed, 4);
    }

    void aLockedConfigurationRefusesEverything_data()
    {
        QTest::addColumn<QString>("locked");
        QTest::newRow("one that the backup holds") << stored;
        QTest::newRow("one that it does not touch") << "config1";
    }

    void aLockedConfigurationRefusesEverything()
    {
        QFETCH(const QString, locked);
        Fixture f;
        f.expectOk(QMessageBox::Information, f.dialog, "Cannot load backup",
                   "Cannot load backup from file '" + m_path
                       + "' !\n One or more Configurations are locked.");
        const int code =
            f.restore(m_path, {entry("standard", false), entry(locked, true), entry("c", false)});
        QCOMPARE(code, 1);
        QCOMPARE(f.channel.trace(), QStringList());
    }

    void aFileThatCannotBeReadIsRefused_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::newRow("empty text") << SampleBackup::documentWith("example.com", "");
        QTest::newRow("no CDATA") << SampleBackup::documentWith(
            "<![CDATA[AAH+/yBjb25maWd1cmF0aW9ucw==]]>", "AAH+");
        QTest::newRow("vanished") << QByteArray();
    }

    void aFileThatCannotBeReadIsRefused()
    {
        QFETCH(const QByteArray, document);
        writeFile(m_path, document);
        if (document.isEmpty()) {
            QVERIFY(QFile::remove(m_path));
        }
        Fixture f;
        f.expectOk(QMessageBox::Critical, f.dialog, "Error reading backup file",
                   "Cannot read '" + m_path + "' !");
        QCOMPARE(f.restore(m_path), 1);
        QCOMPARE(f.channel.trace(), QStringList());
    }

    void aPathIsShownAsItIs()
    {
        const QString path =
            writeFile(m_folder.filePath("<b>%1 &amp; more.xml"), "<ZOR><a/></ZOR>");
        Fixture f;
        f.driver.expectDialog({}, [path](QDialog *box) {
            auto *message = qobject_cast<QMessageBox *>(box);
            QCOMPARE(message->text(), "Cannot read '" + path + "' !");
            QCOMPARE(message->textFormat(), Qt::PlainText);
            message->button(QMessageBox::Ok)->click();
        });
        QCOMPARE(f.restore(path), 1);
    }

    void withoutYesNothingIsSent_data()
    {
        QTest::addColumn<bool>("isEscaped");
        QTest::newRow("No") << false;
        QTest::newRow("Escape") << true;
    }

    void withoutYesNothingIsSent()
    {
        QFETCH(const bool, isEscaped);
        Fixture f;
        if (isEscaped) {
            f.driver.expectDialog({}, [](QDialog *box) { QTest::keyClick(box, Qt::Key_Escape); });
        } else {
            f.expectConfirmation(QMessageBox::No);
        }
        QCOMPARE(f.restore(m_path), 2);
        QCOMPARE(f.channel.trace(), QStringList());
    }

    void aBackupThatDoesNotFitIsRefused_data()
    {
        QTest::addColumn<BackendVersions>("versions");
        QTest::addColumn<QStringList>("trace");
        BackendVersions versions = SampleBackup::versions();
        versions.systemModel = "Model 6";
        QTest::newRow("another model") << versions << embeddedQuery + embeddedQuery;
        versions = SampleBackup::versions();
        versions.ptVersion.micro = 0;
        QTest::newRow("older tracking software") << versions << embeddedQuery + embeddedQuery;
        versions = SampleBackup::versions();
        versions.ctVersion.minor = 4;
        QTest::newRow("older firmware") << versions << embeddedQuery + embeddedQuery;
        versions = SampleBackup::versions();
        versions.ptVersion = {3, 9, 9};
        QTest::newRow("so old that it is embedded") << versions << QStringList();
    }

    void aBackupThatDoesNotFitIsRefused()
    {
        QFETCH(const BackendVersions, versions);
        QFETCH(const QStringList, trace);
        Fixture f;
        f.versions = versions;
        f.expectConfirmation();
        f.expectOk(QMessageBox::Critical, f.parent.get(), "Invalid backup file",
                   "Unable to restore from backup (" + m_path + ")");
        QCOMPARE(f.restore(m_path), 3);
        QCOMPARE(f.channel.trace(), trace);
    }

    void anEmptyDocumentDoesNotFit()
    {
        writeFile(m_path, "<ZOR/>");
        Fixture f;
        f.expectConfirmation();
        f.expectOk(QMessageBox::Critical, f.parent.get(), "Invalid backup file",
                   "Unable to restore from backup (" + m_path + ")");
        QCOMPARE(f.restore(m_path), 3);
    }

    void anEmbeddedControllerIsRestoredWithItsNetwork()
    {
        Fixture f;
        f.expectConfirmation();
        f.expectNetworkQuestion();
        f.expectSuccess();
        QCOMPARE(f.restore(m_path, {entry(stored, false)}), 0);
        FaultyRestore expected(0, false);
        QCOMPARE(expected.run(), 0);
        QCOMPARE(f.channel.trace(), expected.trace);
    }

    void withoutTheNetworkEverythingElseIsRestored_data()
    {
        QTest::addColumn<bool>("isEscaped");
        QTest::newRow("No") << false;
        QTest::newRow("Escape") << true;
    }

    void withoutTheNetworkEverythingElseIsRestored()
    {
        QFETCH(const bool, isEscaped);
        Fixture f;
        f.expectConfirmation();
        if (isEscaped) {
            f.driver.expectDialog({}, [](QDialog *box) { QTest::keyClick(box, Qt::Key_Escape); });
        } else {
            f.expectNetworkQuestion(QMessageBox::No);
        }
        f.expectSuccess();
        QCOMPARE(f.restore(m_path), 0);
        FaultyRestore expected(0, false);
        expected.run();
        QVERIFY(expected.trace.removeOne("sendCommand system hostname tracker-7"));
        QVERIFY(expected.trace.removeOne("sendCommand system net 192.168.0.7/24 gw 192.168.0.1"));
        QCOMPARE(f.channel.trace(), expected.trace);
    }

    void theModelInTheQuestionIsTheControllers()
    {
        // Document and controller agree on it, or the question would not be asked.
        writeFile(m_path, SampleBackup::documentWith("Model 5", "Model %1 &lt;7>"));
        Fixture f;
        f.versions.systemModel = "Model %1 <7>";
        f.expectConfirmation();
        f.expectYesOrNo(
            QMessageBox::Question,
            "Hostname and ip settings can be restored. After reboot the Model %1 <7> might "
            "not be reachable via network due to wrong network settings.\n\nRestore?",
            QMessageBox::No);
        f.expectSuccess();
        QCOMPARE(f.restore(m_path), 0);
    }

    void anotherControllerIsNotAskedForItsNetwork()
    {
        Fixture f;
        f.channel.answer("system controller_embedded", "no");
        f.expectConfirmation();
        f.expectSuccess();
        QCOMPARE(f.restore(m_path), 0);
        const QStringList trace = f.channel.trace();
        QCOMPARE(trace.mid(0, 7),
                 embeddedQuery + embeddedQuery + embeddedQuery
                     + QStringList("queryInt config number_of_configs"));
        for (const QString &line : trace) {
            QVERIFY2(!line.startsWith("sendCommand system hostname")
                         && !line.startsWith("sendCommand system net")
                         && !line.startsWith("sendCommand system domainname"),
                     qPrintable(line));
        }
    }

    void anIncompleteCascadeIsASuccess()
    {
        Fixture f;
        f.channel.answer("cascade connected_slave_available slave-b", "no");
        f.expectConfirmation();
        f.expectNetworkQuestion();
        f.expectOk(QMessageBox::Information, f.parent.get(), "Success (incomplete cascade)",
                   "Backup restored!\n\nNot all machines of the configured\ncascade could be "
                   "reconnected. Please, see\nthe Events window for more details.");
        QCOMPARE(f.restore(m_path), 0);
        QCOMPARE(f.channel.trace().last(),
                 ScriptedChannel::reported("unable to reconnect slave 'slave-b'"));
    }

    void aFailedRestoreCancelsTheUpload_data()
    {
        QTest::addColumn<bool>("isEmbedded");
        QTest::addColumn<bool>("isCancelled");
        QTest::newRow("embedded") << true << true;
        QTest::newRow("not embedded") << false << true;
        QTest::newRow("cancel fails as well") << true << false;
    }

    void aFailedRestoreCancelsTheUpload()
    {
        QFETCH(const bool, isEmbedded);
        QFETCH(const bool, isCancelled);
        Fixture f;
        f.channel.answer("system controller_embedded", isEmbedded ? "yes" : "no");
        f.channel.answer("veltra2 config delete_config " + stored.toLatin1(), "veltra2 no");
        if (!isCancelled) {
            f.channel.fail("system upload cancel");
        }
        f.expectConfirmation();
        if (isEmbedded) {
            f.expectNetworkQuestion();
        }
        f.expectFailure(m_path);
        QCOMPARE(f.restore(m_path), 4);
        const QStringList trace = f.channel.trace();
        QCOMPARE(trace.mid(trace.size() - 2),
                 QStringList({deleted(stored), "sendCommand system upload cancel"}));
    }

    void aBrokenConnectionIsThrown_data()
    {
        QTest::addColumn<int>("query");
        QTest::newRow("by the first question of the fitness test") << 1;
        QTest::newRow("by its second question") << 2;
        QTest::newRow("by the restore, under the wait cursor") << 3;
    }

    void aBrokenConnectionIsThrown()
    {
        QFETCH(const int, query);
        Fixture f;
        f.channel.failNth(query);
        f.expectConfirmation();
        if (query == 3) {
            f.expectNetworkQuestion();
        }
        QCOMPARE(f.restore(m_path), thrown);
        QCOMPARE(f.problem, QString("connection error"));
        QCOMPARE(f.channel.commandCount(), query);
        QCOMPARE(takeCursors(), 0);
    }

    void everySingleCommandMayFail_data()
    {
        QTest::addColumn<bool>("lasting");
        QTest::newRow("one command fails") << false;
        QTest::newRow("all commands fail from one on") << true;
    }

    void everySingleCommandMayFail()
    {
        QFETCH(const bool, lasting);
        bool isFaultMet = true;
        for (int failAt = 1; isFaultMet; ++failAt) {
            FaultyRestore expected(failAt, lasting);
            const int code = expected.run();

            Fixture f;
            f.channel.failNth(failAt, lasting);
            f.expectConfirmation();
            if (expected.isNetworkAsked) {
                f.expectNetworkQuestion();
            }
            if (code == 4) {
                f.expectFailure(m_path);
            } else if (code == 0 && expected.isCascadeComplete) {
                f.expectSuccess();
            } else if (code == 0) {
                f.expectOk(
                    QMessageBox::Information, f.parent.get(), "Success (incomplete cascade)",
                    "Backup restored!\n\nNot all machines of the configured\ncascade could be "
                    "reconnected. Please, see\nthe Events window for more details.");
            }
            QCOMPARE(f.restore(m_path), code);
            QCOMPARE(f.channel.trace(), expected.trace);
            QCOMPARE(takeCursors(), 0);
            isFaultMet = expected.isFaultMet;
        }
    }

    void onlyTheQuestionForTheNetworkSetsTheWaitCursorForTheRestore_data()
    {
        QTest::addColumn<bool>("isEmbedded");
        QTest::addColumn<QMessageBox::StandardButton>("answer");
        QTest::newRow("embedded, Yes") << true << QMessageBox::Yes;
        QTest::newRow("embedded, No") << true << QMessageBox::No;
        QTest::newRow("not embedded") << false << QMessageBox::NoButton;
    }

    void onlyTheQuestionForTheNetworkSetsTheWaitCursorForTheRestore()
    {
        QFETCH(const bool, isEmbedded);
        QFETCH(const QMessageBox::StandardButton, answer);
        Fixture f;
        f.channel.answer("system controller_embedded", isEmbedded ? "yes" : "no");
        QList<bool> waiting;
        for (const char *command : {"system controller_embedded", "config number_of_configs",
                                    "cascade connected_slave_available slave-b"}) {
            f.channel.whenSent(command, [&waiting] { waiting << isWaiting(); });
        }
        f.expectConfirmation();
        if (isEmbedded) {
            f.expectNetworkQuestion(answer);
        }
        f.expectSuccess();
        QCOMPARE(f.restore(m_path), 0);
        // Twice in the fitness test, three times in the restore.
        QCOMPARE(waiting, QList<bool>({false, false, isEmbedded, isEmbedded, isEmbedded}));
    }

    // The reader says in the log what it does not know.
    void theWaitCursorIsShownWhileTheFileIsRead()
    {
        static QList<bool> waiting;
        writeFile(m_path, "<ZOR><a/></ZOR>");
        Fixture f;
        f.expectOk(QMessageBox::Critical, f.dialog, "Error reading backup file",
                   "Cannot read '" + m_path + "' !");
        const QtMessageHandler before =
            qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &) {
                if (type == QtDebugMsg) {
                    waiting << isWaiting();
                }
            });
        f.restore(m_path);
        qInstallMessageHandler(before);
        QVERIFY(!waiting.isEmpty());
        QVERIFY(!waiting.contains(false));
    }

    void noBoxIsOpenUnderTheWaitCursor_data()
    {
        QTest::addColumn<QByteArray>("failing");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("boxes");
        QTest::newRow("success") << QByteArray() << 0 << 3;
        QTest::newRow("incomplete")
            << QByteArray("cascade connected_slave_available slave-a") << 0 << 3;
        QTest::newRow("failure") << QByteArray("config number_of_configs") << 4 << 3;
    }

    void noBoxIsOpenUnderTheWaitCursor()
    {
        QFETCH(const QByteArray, failing);
        QFETCH(const int, code);
        QFETCH(const int, boxes);
        Fixture f;
        f.channel.fail(failing);
        const BoxCursors cursors;
        for (int i = 0; i < boxes; ++i) {
            f.driver.expectDialog({}, [](QDialog *box) {
                auto *message = qobject_cast<QMessageBox *>(box);
                (message->button(QMessageBox::Yes) ? message->button(QMessageBox::Yes)
                                                   : message->button(QMessageBox::Ok))
                    ->click();
            });
        }
        QCOMPARE(f.restore(m_path), code);
        QCOMPARE(cursors.boxes(), boxes);
        QVERIFY(!cursors.wasAnyWaiting());
    }

    void theHostMayDestroyTheDialogsWhileAnyBoxIsOpen_data()
    {
        using Script = std::function<void(Fixture &)>;
        QTest::addColumn<Script>("script");
        QTest::addColumn<bool>("isLocked");
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<int>("code");
        const QByteArray sample = SampleBackup::document();
        const Script nothing = [](Fixture &) {};
        QTest::newRow("locked") << nothing << true << sample << 1;
        QTest::newRow("unreadable") << nothing << false << QByteArray("<ZOR><a/></ZOR>") << 1;
        QTest::newRow("confirmation") << nothing << false << sample << 2;
        const Script confirmed = [](Fixture &f) { f.expectConfirmation(); };
        QTest::newRow("unfit") << confirmed << false << QByteArray("<ZOR/>") << 3;
        QTest::newRow("network question") << confirmed << false << sample << 2;
        QTest::newRow("failure") << Script([](Fixture &f) {
            f.channel.fail("config number_of_configs");
            f.expectConfirmation();
            f.expectNetworkQuestion();
        }) << false << sample << 4;
        QTest::newRow("success") << Script([](Fixture &f) {
            f.expectConfirmation();
            f.expectNetworkQuestion();
        }) << false << sample << 0;
    }

    void theHostMayDestroyTheDialogsWhileAnyBoxIsOpen()
    {
        QFETCH(const std::function<void(Fixture &)>, script);
        QFETCH(const bool, isLocked);
        QFETCH(const QByteArray, document);
        QFETCH(const int, code);
        writeFile(m_path, document);
        Fixture f;
        script(f);
        int sent = -1;
        f.driver.expectDialog({}, [&f, &sent](QDialog *) {
            f.parent.reset();
            sent = f.channel.commandCount();
        });
        QCOMPARE(f.restore(m_path, {entry("config1", isLocked)}), code);
        QVERIFY(!f.parent);
        QCOMPARE(f.channel.commandCount(), sent); // nothing goes on without the dialog
    }

private:
    QTemporaryDir m_folder;
    QString m_path; // of the sample document
};

VELTRA4_TEST(TestBackupRestore)
#include "tst_backuprestore.moc"
