#include "tests/endtoend/frontend.h"
#include "tests/endtoend/table.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QAbstractButton>
#include <QDialog>
#include <QEventLoop>
#include <QGuiApplication>
#include <QTimer>
#include <QtTest>

namespace {

using Action = std::function<void(QDialog *)>;

// Little to read and little to transfer, so that there are few calls and each can be tried.
ControllerState smallState()
{
    ControllerState state = ControllerState::sample();
    state.configurations = {configurationIn(state, Sample::standard),
                            configurationIn(state, Sample::active),
                            configurationIn(state, Sample::fair)};
    for (Configuration &configuration : state.configurations) {
        configuration.data.truncate(150);
    }
    state.baseData.truncate(50);
    return state;
}

// A user at work on windows that may vanish at any time.
struct Scene
{
    TemporaryHome home;
    FrontEnd frontEnd{smallState()};
    QString file; ///< what is loaded

    // Expects a window, which the user closes in the end if it is still there. The last thing that
    // @p action does is the one that may cost the window the life.
    void expect(const char *objectName, const Action &action)
    {
        frontEnd.driver.expectDialog(QString::fromLatin1(objectName), [action](QDialog *window) {
            const QPointer<QDialog> watched(window);
            action(window);
            if (watched && watched->isVisible()) {
                watched->reject();
            }
        });
    }
    void expectChooser(const char *caption, const QString &path)
    {
        frontEnd.driver.expectFileDialog(QString::fromLatin1(caption), path);
    }
    void answer(QMessageBox::StandardButton button)
    {
        expect("", [button](QDialog *box) {
            qobject_cast<QMessageBox *>(box)->button(button)->click();
        });
    }
    void useList(const Action &action)
    {
        expect("ConfigurationDialog", action);
        frontEnd.tryAction();
    }
    void failAlways(const char *fault)
    {
        QString error;
        QVERIFY2(frontEnd.channel.faults().add(QString::fromLatin1(fault), &error),
                 qPrintable(error));
    }
};

using Step = void (*)(Scene &scene);

void nothing(Scene & /*scene*/) { }

void offer(Scene &scene)
{
    scene.frontEnd.offerAction();
}

void releaseFirst(Scene &scene)
{
    scene.frontEnd.release();
}

void refresh(Scene &scene)
{
    scene.useList([](QDialog *) {});
}

void failQueries(Scene &scene)
{
    scene.failAlways("config free_space");
    scene.failAlways("/^config (owner|desc)_of_config/");
}

void failContact(Scene &scene)
{
    scene.failAlways("config number_of_configs");
}

void hearOfNoContact(Scene &scene)
{
    scene.answer(QMessageBox::Ok);
    scene.frontEnd.tryAction();
}

void activate(Scene &scene)
{
    scene.useList([](QDialog *list) {
        Table::click(list, Sample::fairText);
        UserInput::click(list, "pushButton_apply");
    });
}

void lockAnother(Scene &scene)
{
    scene.frontEnd.controller.execute("config active_config " + Sample::fair);
    scene.frontEnd.controller.execute("config new_password 'right'");
    scene.frontEnd.controller.execute("config active_config " + Sample::active);
}

void activateLocked(Scene &scene)
{
    scene.useList([](QDialog *list) { Table::doubleClick(list, Sample::fairText); });
}

void deleteOne(Scene &scene)
{
    scene.useList([&scene](QDialog *list) {
        scene.answer(QMessageBox::Ok);
        UserInput::click(list, "pushButton_delete");
    });
}

void deleteByKey(Scene &scene)
{
    scene.useList([&scene](QDialog *list) {
        scene.answer(QMessageBox::Ok);
        UserInput::press(list, Qt::Key_Delete);
    });
}

void create(Scene &scene)
{
    scene.useList([&scene](QDialog *list) {
        scene.expect("NewConfigurationDialog", [](QDialog *dialog) {
            UserInput::type(dialog, "lineEdit_desc", "x");
            UserInput::click(dialog, "pushButton_create");
        });
        UserInput::click(list, "pushButton_new");
    });
}

void changeAndAgree(QDialog *dialog)
{
    UserInput::type(dialog, "lineEdit_desc", "x");
    UserInput::press(dialog, Qt::Key_Return);
}

void edit(Scene &scene)
{
    scene.useList([&scene](QDialog *list) {
        scene.expect("EditConfigDialog", changeAndAgree);
        UserInput::click(list, "pushButton_edit");
    });
}

void editByDoubleClick(Scene &scene)
{
    scene.useList([&scene](QDialog *list) {
        scene.expect("EditConfigDialog", changeAndAgree);
        Table::doubleClick(list, Sample::fairText);
    });
}

void lock(Scene &scene)
{
    scene.useList([&scene](QDialog *list) {
        scene.expect("LockConfigurationDialog", [](QDialog *dialog) {
            UserInput::type(dialog, "lineEdit_new_password", "a");
            UserInput::type(dialog, "lineEdit_new_password_repeat", "a");
            UserInput::click(dialog, "pushButton_ok");
        });
        UserInput::click(list, "pushButton_lock");
    });
}

void lockActive(Scene &scene)
{
    scene.frontEnd.controller.execute("config new_password 'right'");
}

void unlock(Scene &scene)
{
    scene.useList([&scene](QDialog *list) {
        scene.expect("UnlockConfigurationDialog", [](QDialog *dialog) {
            UserInput::type(dialog, "lineEdit_password", "right");
            UserInput::click(dialog, "pushButton_ok");
        });
        UserInput::click(list, "pushButton_lock");
    });
}

void unlockBySuperPassword(Scene &scene)
{
    scene.useList([&scene](QDialog *list) {
        scene.expect("UnlockConfigurationDialog", [](QDialog *dialog) {
            UserInput::click(dialog, "checkBox_use_super_password");
            UserInput::type(dialog, "lineEdit_password", "super");
            UserInput::press(dialog, Qt::Key_Return);
        });
        UserInput::click(list, "pushButton_lock");
    });
}

void save(Scene &scene)
{
    scene.useList([&scene](QDialog *list) {
        scene.expect("ConfigSaveDlgClass", [](QDialog *dialog) {
            UserInput::click(dialog, "checkBox_allSettings");
            UserInput::click(dialog, "pushButton_save");
        });
        scene.expectChooser("Save configuration(s)", scene.home.filePath("new.dat"));
        scene.answer(QMessageBox::Ok);
        UserInput::click(list, "pushButton_save");
    });
}

void failClones(Scene &scene)
{
    scene.failAlways("/clone_config/#2");
    scene.failAlways("/delete_config/");
}

void backUp(Scene &scene)
{
    scene.useList([&scene](QDialog *list) {
        scene.expect("ConfigSaveDlgClass",
                     [](QDialog *dialog) { UserInput::click(dialog, "pushButton_save"); });
        scene.expectChooser("Backup all settings", scene.file);
        scene.answer(QMessageBox::Ok);
        UserInput::click(list, "pushButton_save");
    });
}

void failBackup(Scene &scene)
{
    scene.file = scene.home.filePath("backup.xml");
    scene.failAlways("system download 2");
}

void nameBackup(Scene &scene)
{
    scene.file = scene.home.filePath("backup.xml");
}

// Without waiting for the time of the automatic backup to come.
void backUpAutomatically(Scene &scene)
{
    auto *dialog = scene.frontEnd.window->findChild<QDialog *>("ConfigSaveDlgClass");
    scene.frontEnd.tellVersion(HostVersion::current);
    QVERIFY(QMetaObject::invokeMethod(dialog, "doAutomaticBackup"));
}

void makeConfigurationFile(Scene &scene)
{
    const ControllerState &state = scene.frontEnd.state();
    scene.file = TransferFiles::write(
        scene.home.filePath("some.dat"),
        Archive::pack({TransferFiles::item(configurationIn(state, Sample::fair)),
                       TransferFiles::item(configurationIn(state, Sample::active))}));
}

void load(Scene &scene)
{
    scene.useList([&scene](QDialog *list) {
        scene.expectChooser("Load Configurations", scene.file);
        scene.expect("ConfigLoadDlgClass",
                     [](QDialog *dialog) { UserInput::click(dialog, "pushButton_load"); });
        scene.answer(QMessageBox::Ok);
        UserInput::click(list, "pushButton_load");
    });
}

// The cascade differs from the one in the backup afterwards.
void makeBackup(Scene &scene)
{
    nameBackup(scene);
    backUp(scene);
    scene.frontEnd.driver.verify();
    scene.frontEnd.controller.execute("veltra2 cascade sub_slave tracker-lab4");
    scene.frontEnd.controller.execute("veltra2 cascade add_slave tracker-hall1");
}

void restore(Scene &scene)
{
    scene.useList([&scene](QDialog *list) {
        scene.expectChooser("Load Configurations", scene.file);
        scene.answer(QMessageBox::Yes);
        scene.answer(QMessageBox::Yes);
        scene.answer(QMessageBox::Ok);
        UserInput::click(list, "pushButton_load");
    });
}

void makeBackupAndFailCascade(Scene &scene)
{
    makeBackup(scene);
    scene.failAlways("cascade connected_slave_available *");
}

struct Operation
{
    const char *name;
    Step prepare;
    Step play;
};

const Operation operations[] = {
    {"first refresh", releaseFirst, offer},
    {"refresh", nothing, refresh},
    {"refresh with failures", failQueries, refresh},
    {"refresh without contact", failContact, hearOfNoContact},
    {"activation", nothing, activate},
    {"activation by double click", lockAnother, activateLocked},
    {"deletion", nothing, deleteOne},
    {"deletion by key", nothing, deleteByKey},
    {"new", nothing, create},
    {"edit", nothing, edit},
    {"edit by double click", nothing, editByDoubleClick},
    {"lock", nothing, lock},
    {"unlock", lockActive, unlock},
    {"unlock by super password", lockActive, unlockBySuperPassword},
    {"save", nothing, save},
    {"save with failures", failClones, save},
    {"manual backup", nameBackup, backUp},
    {"failing manual backup", failBackup, backUp},
    {"automatic backup", nothing, backUpAutomatically},
    {"failing automatic backup", failBackup, backUpAutomatically},
    {"load", makeConfigurationFile, load},
    {"restore", makeBackup, restore},
    {"restore of an incomplete cascade", makeBackupAndFailCascade, restore},
};

void release(FrontEnd &frontEnd)
{
    frontEnd.release();
}

void destroyWindow(FrontEnd &frontEnd)
{
    frontEnd.destroyWindow();
}

// The host's channel waits for the answer in an event loop, and there the host is closed.
void closeWhileWaiting(FrontEnd &frontEnd)
{
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
        frontEnd.release();
        frontEnd.destroyWindow();
        loop.quit();
    });
    loop.exec();
}

using Pull = void (*)(FrontEnd &frontEnd);
const Pull pulls[] = {release, destroyWindow, closeWhileWaiting};
constexpr int pullCount = 3;

} // namespace

Q_DECLARE_METATYPE(Step)

/// The host takes everything away within a call of its own channel, while the plug-in waits for it
/// to return.
class TestEndToEndExitInCommand : public QObject
{
    Q_OBJECT

private slots:
    void theHostLeavesWithinEachCall_data();
    void theHostLeavesWithinEachCall();

private:
    static QVector<bool> playUndisturbed(Step prepare, Step play);
    static void playUntil(int lastCall, Step prepare, Step play, Pull pull);
};

// Returns of each call whether it posted a message.
QVector<bool> TestEndToEndExitInCommand::playUndisturbed(Step prepare, Step play)
{
    Scene scene;
    prepare(scene);
    QVector<bool> calls;
    Record &record = scene.frontEnd.record;
    record.takeMessages();
    record.onCall = [&] { calls << !record.takeMessages().isEmpty(); };
    play(scene);
    record.onCall = {};
    scene.frontEnd.driver.verify();
    return calls;
}

void TestEndToEndExitInCommand::playUntil(int lastCall, Step prepare, Step play, Pull pull)
{
    Scene scene;
    prepare(scene);
    int calls = 0;
    scene.frontEnd.record.onCall = [&] {
        if (++calls == lastCall) {
            pull(scene.frontEnd);
        }
    };
    play(scene);
    QCOMPARE(calls, lastCall); // the plug-in falls silent
    QCOMPARE(scene.frontEnd.channel.receiverCount(), 0);
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(!QGuiApplication::overrideCursor());
    for (const QString &problem : scene.frontEnd.driver.takeProblems()) {
        QVERIFY2(problem.startsWith("never seen"), qPrintable(problem));
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    scene.frontEnd.triggerAction(); // the menu may still show it
}

void TestEndToEndExitInCommand::theHostLeavesWithinEachCall_data()
{
    QTest::addColumn<Step>("prepare");
    QTest::addColumn<Step>("play");
    for (const Operation &operation : operations) {
        QTest::newRow(operation.name) << operation.prepare << operation.play;
    }
}

// The ways to leave take turns, but for the calls in which hosts are most likely to leave: the
// first, the last, and those that tell them something.
void TestEndToEndExitInCommand::theHostLeavesWithinEachCall()
{
    QFETCH(const Step, prepare);
    QFETCH(const Step, play);
    const QVector<bool> calls = playUndisturbed(prepare, play);
    QVERIFY(!calls.isEmpty());
    for (int call = 1; call <= calls.size(); ++call) {
        const bool takesAllTurns = calls.at(call - 1) || call == 1 || call == calls.size();
        for (int turn = 0; turn < pullCount; ++turn) {
            if (takesAllTurns || turn == call % pullCount) {
                playUntil(call, prepare, play, pulls[turn]);
            }
            if (QTest::currentTestFailed()) {
                qWarning("call %d of %d, turn %d", call, calls.size(), turn);
                return;
            }
        }
    }
}

VELTRA4_TEST_MAIN(TestEndToEndExitInCommand)
#include "tst_endtoendexitincommand.moc"
