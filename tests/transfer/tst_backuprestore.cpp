#include "channel/controller.h"
#include "hostapi/backendversions.h"
#include "tests/backup/samplebackup.h"
#include "tests/support/testmain.h"
#include "tests/transfer/transferstage.h"
#include "transfer/backuprestore.h"

#include <QTest>

#include <functional>
#include <stdexcept>

using namespace TransferTesting;

namespace {

constexpr int thrown = 10;

const QByteArray stored = "config20240305140709123"; // the one configuration of the sample document

// One command and the time-out before it.
const QStringList embeddedQuery{"setTimeout 0 3000 1", "queryBool system controller_embedded"};

ConfigEntry configEntry(bool locked)
{
    ConfigEntry result;
    result.locked = locked;
    return result;
}

/// A backup and a controller that it fits, both of an odd model. No name is taken for markup or for
/// a place to put something in.
struct RestoreStage : TransferStage
{
    explicit RestoreStage(
        const QByteArray &document = SampleBackup::documentWith("Model 5", "Model %1 &lt;7>"))
        : file(writeFile(path("<b>%1 &amp; more.xml"), document))
    {
        versions.systemModel = "Model %1 <7>";
        channel.answer("system controller_embedded", "yes");
        channel.answerConfigurations({stored}, stored);
        channel.answer("system import available", "2 config");
        channel.answer("system import item i01", stored + " 'me' 'all'");
        channel.answer("system import item i02", "__base 'me' 'base'");
        channel.answer("cascade number_of_connected_slaves", "1");
        channel.answer("cascade connected_slave d01", "slave-a");
        channel.answer("cascade connected_slave_available slave-a", "yes");
        channel.answer("cascade connected_slave_available slave-b", "yes");
    }

    /// Restores the file and gives the code back, also of an exception.
    int restore(const ConfigEntryList &configurations = {configEntry(false)})
    {
        try {
            return restoreBackup(Controller(&channel), &versions, dialog, file, configurations);
        } catch (const std::runtime_error &error) {
            problem = error.what();
            return thrown;
        }
    }

    void expectConfirmation(QMessageBox::StandardButton answer = QMessageBox::Yes)
    {
        driver.expectBox(restoreConfirmation(parent.get(), answer));
    }

    void expectNetworkQuestion(QMessageBox::StandardButton answer = QMessageBox::Yes)
    {
        driver.expectBox(yesNoBox(
            QMessageBox::Question, "Confirmation",
            "Hostname and ip settings can be restored. After reboot the Model %1 <7> might "
            "not be reachable via network due to wrong network settings.\n\nRestore?",
            parent.get(), answer));
    }

    void expectBothQuestions()
    {
        expectConfirmation();
        expectNetworkQuestion();
    }

    void expectSuccess()
    {
        driver.expectBox(
            okBox(QMessageBox::Information, "Success", "Backup restored!", parent.get()));
    }

    void expectFailure()
    {
        driver.expectBox(okBox(QMessageBox::Critical, "Invalid backup file",
                               "Error while restoring from backup (" + file + ").", parent.get()));
    }

    const QString file;
    BackendVersions versions = SampleBackup::versions();
    QString problem;
};

} // namespace

Q_DECLARE_METATYPE(std::function<void(RestoreStage &)>)

class TestBackupRestore : public QObject
{
    Q_OBJECT

private slots:
    void theCodesAreAsAgreed()
    {
        QCOMPARE(RestoreCode::restored, 0);
        QCOMPARE(RestoreCode::notStarted, 1);
        QCOMPARE(RestoreCode::declined, 2);
        QCOMPARE(RestoreCode::unfit, 3);
        QCOMPARE(RestoreCode::failed, 4);
    }

    void anyLockedConfigurationRefusesEverything()
    {
        RestoreStage f;
        f.driver.expectBox(okBox(QMessageBox::Information, "Cannot load backup",
                                 "Cannot load backup from file '" + f.file
                                     + "' !\n One or more Configurations are locked.",
                                 f.dialog));
        QCOMPARE(f.restore({configEntry(false), configEntry(true), configEntry(false)}),
                 RestoreCode::notStarted);
        QCOMPARE(f.channel.trace(), QStringList());
    }

    void aFileThatCannotBeReadIsRefused()
    {
        RestoreStage f("<ZOR><a/></ZOR>");
        f.driver.expectBox(okBox(QMessageBox::Critical, "Error reading backup file",
                                 "Cannot read '" + f.file + "' !", f.dialog));
        QCOMPARE(f.restore(), RestoreCode::notStarted);
        QCOMPARE(f.channel.trace(), QStringList());
    }

    void withoutYesNothingIsSent()
    {
        RestoreStage f;
        f.expectConfirmation(QMessageBox::No);
        QCOMPARE(f.restore(), RestoreCode::declined);
        QCOMPARE(f.channel.trace(), QStringList());
    }

    void aBackupThatDoesNotFitIsRefused()
    {
        RestoreStage f;
        f.versions.systemModel = "Model 6";
        f.expectConfirmation();
        f.driver.expectBox(okBox(QMessageBox::Critical, "Invalid backup file",
                                 "Unable to restore from backup (" + f.file + ")", f.parent.get()));
        QCOMPARE(f.restore(), RestoreCode::unfit);
        QCOMPARE(f.channel.trace(), embeddedQuery + embeddedQuery);
    }

    void anEmbeddedControllerIsRestoredWithItsNetwork()
    {
        RestoreStage f;
        f.expectBothQuestions();
        f.expectSuccess();
        QCOMPARE(f.restore(), RestoreCode::restored);
        const QStringList trace = f.channel.trace();
        // Asked for each answer of the fitness test, and by the restore.
        QCOMPARE(trace.mid(0, 9),
                 embeddedQuery + embeddedQuery + embeddedQuery
                     + QStringList({"sendCommand system hostname tracker-7",
                                    "sendCommand system net 192.168.0.7/24 gw 192.168.0.1",
                                    "sendCommand system domainname example.com"}));
        QVERIFY(trace.contains("sendCommand system import 'config' '" + stored + '\''));
        QCOMPARE(trace.last(), "queryBool cascade connected_slave_available slave-b");
    }

    void withoutTheNetworkEverythingElseIsRestored()
    {
        RestoreStage f;
        f.expectConfirmation();
        f.expectNetworkQuestion(QMessageBox::No);
        f.expectSuccess();
        QCOMPARE(f.restore(), RestoreCode::restored);
        const QStringList trace = f.channel.trace();
        QCOMPARE(trace.mid(0, 7),
                 embeddedQuery + embeddedQuery + embeddedQuery
                     + QStringList("sendCommand system domainname example.com"));
        QCOMPARE(trace.last(), "queryBool cascade connected_slave_available slave-b");
    }

    void anotherControllerIsNotAskedForItsNetwork()
    {
        RestoreStage f;
        f.channel.answer("system controller_embedded", "no");
        f.expectConfirmation();
        f.expectSuccess();
        QCOMPARE(f.restore(), RestoreCode::restored);
        const QStringList trace = f.channel.trace();
        QCOMPARE(trace.mid(0, 7),
                 embeddedQuery + embeddedQuery + embeddedQuery
                     + QStringList("queryInt config number_of_configs"));
        QCOMPARE(trace.filter("sendCommand system hostname"), QStringList());
        QCOMPARE(trace.filter("sendCommand system net"), QStringList());
    }

    void anIncompleteCascadeIsASuccess()
    {
        RestoreStage f;
        f.channel.answer("cascade connected_slave_available slave-b", "no");
        f.expectBothQuestions();
        f.driver.expectBox(
            okBox(QMessageBox::Information, "Success (incomplete cascade)",
                  "Backup restored!\n\nNot all machines of the configured\ncascade could be "
                  "reconnected. Please, see\nthe Events window for more details.",
                  f.parent.get()));
        QCOMPARE(f.restore(), RestoreCode::restored);
        QCOMPARE(f.channel.trace().last(),
                 ScriptedChannel::reported("unable to reconnect slave 'slave-b'"));
    }

    void aFailedRestoreCancelsTheUpload()
    {
        const QByteArray deletion = "veltra2 config delete_config " + stored;
        for (const char *alsoFailing : {"nothing", "system upload cancel"}) {
            RestoreStage f;
            f.channel.answer(deletion, "veltra2 no");
            f.channel.fail(alsoFailing);
            f.expectBothQuestions();
            f.expectFailure();
            QCOMPARE(f.restore(), RestoreCode::failed);
            const QStringList trace = f.channel.trace();
            QCOMPARE(
                trace.mid(trace.size() - 2),
                QStringList({"sendCommandReply " + deletion, "sendCommand system upload cancel"}));
        }
    }

    void aBrokenConnectionIsThrown()
    {
        // The first two by the fitness test, the third one by the restore, under the wait cursor.
        for (int query = 1; query <= 3; ++query) {
            RestoreStage f;
            f.channel.failNth(query);
            f.expectConfirmation();
            if (query == 3) {
                f.expectNetworkQuestion();
            }
            QCOMPARE(f.restore(), thrown);
            QCOMPARE(f.problem, "connection error");
            QCOMPARE(f.channel.commandCount(), query);
        }
    }

    void theQuestionForTheNetworkSetsTheWaitCursorForTheRestore()
    {
        for (const auto answer : {QMessageBox::Yes, QMessageBox::No}) {
            RestoreStage f;
            f.expectConfirmation();
            f.expectNetworkQuestion(answer);
            f.expectSuccess();
            // Twice in the fitness test, three times in the restore.
            QCOMPARE(cursorsDuringRestore(f), QList<bool>({false, false, true, true, true}));
        }
    }

    void withoutThatQuestionThereIsNoWaitCursor()
    {
        RestoreStage f;
        f.channel.answer("system controller_embedded", "no");
        f.expectConfirmation();
        f.expectSuccess();
        QCOMPARE(cursorsDuringRestore(f), QList<bool>({false, false, false, false, false}));
    }

    // The reader says in the log what it does not know.
    void theWaitCursorIsShownWhileTheFileIsRead()
    {
        static QList<bool> waiting;
        RestoreStage f("<ZOR><a/></ZOR>");
        f.driver.expectBox(okBox(QMessageBox::Critical, "Error reading backup file",
                                 "Cannot read '" + f.file + "' !", f.dialog));
        const QtMessageHandler before =
            qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &) {
                if (type == QtDebugMsg) {
                    waiting << isWaiting();
                }
            });
        f.restore();
        qInstallMessageHandler(before);
        QVERIFY(!waiting.isEmpty());
        QVERIFY(!waiting.contains(false));
    }

    void theHostMayDestroyTheDialogsWhileAnyBoxIsOpen_data()
    {
        using Script = std::function<void(RestoreStage &)>;
        QTest::addColumn<Script>("script"); // up to that box
        QTest::addColumn<int>("code");
        QTest::newRow("confirmation") << Script([](RestoreStage &) {}) << RestoreCode::declined;
        QTest::newRow("unfit") << Script([](RestoreStage &f) {
            f.versions.systemModel = "Model 6";
            f.expectConfirmation();
        }) << RestoreCode::unfit;
        QTest::newRow("network question")
            << Script([](RestoreStage &f) { f.expectConfirmation(); }) << RestoreCode::declined;
        QTest::newRow("failure") << Script([](RestoreStage &f) {
            f.channel.fail("config number_of_configs");
            f.expectBothQuestions();
        }) << RestoreCode::failed;
        QTest::newRow("success") << Script([](RestoreStage &f) { f.expectBothQuestions(); })
                                 << RestoreCode::restored;
    }

    void theHostMayDestroyTheDialogsWhileAnyBoxIsOpen()
    {
        QFETCH(const std::function<void(RestoreStage &)>, script);
        RestoreStage f;
        script(f);
        int sent = -1;
        f.driver.expectDialog({}, [&f, &sent](QDialog *) {
            f.parent.reset();
            sent = f.channel.commandCount();
        });
        QTEST(f.restore(), "code");
        QVERIFY(!f.parent);
        QCOMPARE(f.channel.commandCount(), sent); // nothing goes on without the dialog
    }

private:
    static QList<bool> cursorsDuringRestore(RestoreStage &f)
    {
        f.noteCursorAt("system controller_embedded");
        f.noteCursorAt("config number_of_configs");
        f.noteCursorAt("cascade connected_slave_available slave-b");
        f.restore();
        return f.cursors;
    }
};

VELTRA4_TEST(TestBackupRestore)
#include "tst_backuprestore.moc"
