#include "tests/endtoend/frontend.h"
#include "tests/endtoend/table.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QAbstractButton>
#include <QDir>
#include <QLineEdit>
#include <QTimer>
#include <QtTest>

#include <optional>

namespace {

using Action = std::function<void(QDialog *)>;

// A user at work, until the host takes everything away under the window that is open by then.
struct Scene
{
    TemporaryHome home;
    FrontEnd frontEnd;
    Action pull;

    explicit Scene(const ControllerState &state)
        : frontEnd(state)
    {
    }

    // Expects the windows on the way, and then the last one.
    void expect(const char *objectName, const Action &action)
    {
        frontEnd.driver.expectDialog(QString::fromLatin1(objectName), action);
    }
    void expectChooser(const QString &caption, const QString &path)
    {
        frontEnd.driver.expectFileDialog(caption, path);
    }
    void answer(QMessageBox::StandardButton button)
    {
        expect("", [button](QDialog *box) {
            qobject_cast<QMessageBox *>(box)->button(button)->click();
        });
    }
    void pullUnderBox() { expect("", pull); }
    void pullUnderChooser() { expect("QFileDialog", pull); }

    void fail(const char *fault)
    {
        QString error;
        QVERIFY2(frontEnd.channel.faults().add(QString::fromLatin1(fault), &error),
                 qPrintable(error));
    }

    // The user clicks through the save dialog up to the chooser.
    void save(bool isBackup)
    {
        expect("ConfigSaveDlgClass", [isBackup](QDialog *dialog) {
            if (!isBackup) {
                UserInput::click(dialog, "checkBox_allSettings");
                UserInput::click(dialog, "pushButton_clearSelection");
                Table::click(dialog, Sample::fairText, Qt::ControlModifier);
            }
            UserInput::click(dialog, "pushButton_save");
        });
    }

    // A backup of the controller, made beforehand.
    QString madeBackup()
    {
        QString path = home.filePath("backup.xml");
        frontEnd.useList([&](QDialog *list) {
            expect("ConfigSaveDlgClass", [](QDialog *dialog) {
                UserInput::click(dialog, "pushButton_save");
                UserInput::click(dialog, "pushButton_exit");
            });
            expectChooser("Backup all settings", path);
            answer(QMessageBox::Ok);
            UserInput::click(list, "pushButton_save");
        });
        return path;
    }

    QString configurationFile() const
    {
        return TransferFiles::write(
            home.filePath("some.dat"),
            Archive::pack({TransferFiles::item(configurationIn(frontEnd.state(), Sample::fair))}));
    }
};

using Play = void (*)(Scene &scene);

ControllerState unlockedSample()
{
    ControllerState state = ControllerState::sample();
    configurationIn(state, Sample::locked).password = SaltedHash();
    return state;
}

void list(Scene &scene)
{
    scene.frontEnd.openList(scene.pull);
}

void noContact(Scene &scene)
{
    scene.fail("config number_of_configs");
    scene.pullUnderBox();
    scene.frontEnd.triggerAction();
}

void noContactAfterActivation(Scene &scene)
{
    scene.fail("config number_of_configs#2");
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.pullUnderBox();
        Table::click(dialog, Sample::rotorText);
        UserInput::click(dialog, "pushButton_apply");
    });
}

void noContactAfterDoubleClickOnLocked(Scene &scene)
{
    scene.fail("config number_of_configs#2");
    scene.frontEnd.controller.setState(ControllerState::sample());
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.pullUnderBox();
        Table::doubleClick(dialog, Sample::lockedText);
    });
}

void deletion(Scene &scene)
{
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.pullUnderBox();
        UserInput::click(dialog, "pushButton_delete");
    });
}

void deletionByKey(Scene &scene)
{
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.pullUnderBox();
        UserInput::press(dialog, Qt::Key_Delete);
    });
}

void noContactAfterDeletion(Scene &scene)
{
    scene.fail("config number_of_configs#2");
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.answer(QMessageBox::Ok);
        scene.pullUnderBox();
        UserInput::press(dialog, Qt::Key_Delete);
    });
}

void newDialog(Scene &scene)
{
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("NewConfigurationDialog", scene.pull);
        UserInput::click(dialog, "pushButton_new");
    });
}

void newWarning(Scene &scene)
{
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("NewConfigurationDialog",
                     [](QDialog *creation) { UserInput::click(creation, "pushButton_create"); });
        scene.pullUnderBox();
        UserInput::click(dialog, "pushButton_new");
    });
}

void noContactAfterNew(Scene &scene)
{
    scene.fail("config number_of_configs#2");
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("NewConfigurationDialog", [](QDialog *creation) {
            UserInput::type(creation, "lineEdit_desc", "x");
            UserInput::click(creation, "pushButton_create");
        });
        scene.pullUnderBox();
        UserInput::click(dialog, "pushButton_new");
    });
}

void editDialog(Scene &scene)
{
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("EditConfigDialog", scene.pull);
        UserInput::click(dialog, "pushButton_edit");
    });
}

void editDialogByDoubleClick(Scene &scene)
{
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("EditConfigDialog", scene.pull);
        Table::doubleClick(dialog, Sample::fairText);
    });
}

void editWarning(Scene &scene)
{
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("EditConfigDialog", [](QDialog *edit) {
            UserInput::named<QLineEdit>(edit, "lineEdit_desc")->clear();
            UserInput::click(edit, "pushButton_ok");
        });
        scene.pullUnderBox();
        UserInput::click(dialog, "pushButton_edit");
    });
}

void agreeToDescription(QDialog *edit)
{
    UserInput::type(edit, "lineEdit_desc", "x");
    UserInput::click(edit, "pushButton_ok");
}

void noContactAfterEdit(Scene &scene)
{
    scene.fail("config number_of_configs#2");
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("EditConfigDialog", agreeToDescription);
        scene.pullUnderBox();
        UserInput::click(dialog, "pushButton_edit");
    });
}

void noContactAfterEditByDoubleClick(Scene &scene)
{
    scene.fail("config number_of_configs#2");
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("EditConfigDialog", agreeToDescription);
        scene.pullUnderBox();
        Table::doubleClick(dialog, Sample::fairText);
    });
}

void lockDialog(Scene &scene)
{
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("LockConfigurationDialog", scene.pull);
        UserInput::click(dialog, "pushButton_lock");
    });
}

void lockWarning(Scene &scene)
{
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("LockConfigurationDialog",
                     [](QDialog *lock) { UserInput::click(lock, "pushButton_ok"); });
        scene.pullUnderBox();
        UserInput::click(dialog, "pushButton_lock");
    });
}

void lockMismatch(Scene &scene)
{
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("LockConfigurationDialog", [](QDialog *lock) {
            UserInput::type(lock, "lineEdit_new_password", "a");
            UserInput::type(lock, "lineEdit_new_password_repeat", "b");
            UserInput::press(lock, Qt::Key_Return);
        });
        scene.pullUnderBox();
        UserInput::click(dialog, "pushButton_lock");
    });
}

void noContactAfterLock(Scene &scene)
{
    scene.fail("config number_of_configs#2");
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("LockConfigurationDialog", [](QDialog *lock) {
            UserInput::type(lock, "lineEdit_new_password", "a");
            UserInput::type(lock, "lineEdit_new_password_repeat", "a");
            UserInput::click(lock, "pushButton_ok");
        });
        scene.pullUnderBox();
        UserInput::click(dialog, "pushButton_lock");
    });
}

void unlock(Scene &scene, const Action &action)
{
    scene.frontEnd.controller.execute("config new_password 'right'");
    scene.frontEnd.openList([&scene, action](QDialog *dialog) {
        scene.expect("UnlockConfigurationDialog", action);
        UserInput::click(dialog, "pushButton_lock");
    });
}

void unlockDialog(Scene &scene)
{
    unlock(scene, scene.pull);
}

void unlockWarning(Scene &scene)
{
    unlock(scene, [&scene](QDialog *dialog) {
        scene.pullUnderBox();
        UserInput::click(dialog, "pushButton_ok");
    });
}

void wrongPassword(Scene &scene)
{
    unlock(scene, [&scene](QDialog *dialog) {
        scene.pullUnderBox();
        UserInput::type(dialog, "lineEdit_password", "wrong");
        UserInput::press(dialog, Qt::Key_Return);
    });
}

void wrongSuperPassword(Scene &scene)
{
    unlock(scene, [&scene](QDialog *dialog) {
        scene.pullUnderBox();
        UserInput::click(dialog, "checkBox_use_super_password");
        UserInput::type(dialog, "lineEdit_password", "wrong");
        UserInput::click(dialog, "pushButton_ok");
    });
}

void noContactAfterUnlock(Scene &scene)
{
    scene.fail("config number_of_configs#2");
    unlock(scene, [&scene](QDialog *dialog) {
        scene.pullUnderBox();
        UserInput::type(dialog, "lineEdit_password", "right");
        UserInput::click(dialog, "pushButton_ok");
    });
}

void saveDialog(Scene &scene)
{
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("ConfigSaveDlgClass", scene.pull);
        UserInput::click(dialog, "pushButton_save");
    });
}

// What comes after the save dialog, @p follow, is expected before the user starts.
void saving(Scene &scene, bool isBackup, const std::function<void()> &follow)
{
    scene.frontEnd.openList([&scene, isBackup, follow](QDialog *dialog) {
        scene.save(isBackup);
        follow();
        UserInput::click(dialog, "pushButton_save");
    });
}

void saveChooser(Scene &scene)
{
    saving(scene, false, [&scene] { scene.pullUnderChooser(); });
}

void overwriteQuestion(Scene &scene)
{
    const QString path = scene.configurationFile();
    saving(scene, false, [&scene, path] {
        scene.expectChooser("Save configuration(s)", path);
        scene.pullUnderBox();
    });
}

void savedBox(Scene &scene)
{
    saving(scene, false, [&scene] {
        scene.expectChooser("Save configuration(s)", scene.home.filePath("new.dat"));
        scene.pullUnderBox();
    });
}

void saveFailedBox(Scene &scene)
{
    scene.fail("system download 3");
    savedBox(scene);
}

void saveAbortedBox(Scene &scene)
{
    scene.fail("system download prepare *");
    savedBox(scene);
}

void backupChooser(Scene &scene)
{
    saving(scene, true, [&scene] { scene.pullUnderChooser(); });
}

void backedUpBox(Scene &scene)
{
    saving(scene, true, [&scene] {
        scene.expectChooser("Backup all settings", scene.home.filePath("new.xml"));
        scene.pullUnderBox();
    });
}

void backupFailedBox(Scene &scene)
{
    scene.fail("system controller_embedded");
    backedUpBox(scene);
}

void backupUnwritableBox(Scene &scene)
{
    QDir(scene.home.filePath("")).mkpath("folder");
    scene.frontEnd.record.onCommand = [&scene](const QByteArray &command) {
        if (command == "system download 1") {
            QDir(scene.home.filePath("folder")).removeRecursively();
        }
    };
    saving(scene, true, [&scene] {
        scene.expectChooser("Backup all settings", scene.home.filePath("folder/new.xml"));
        scene.pullUnderBox();
    });
}

void loading(Scene &scene, const QString &path, const std::function<void()> &follow)
{
    scene.frontEnd.openList([&scene, path, follow](QDialog *dialog) {
        scene.expectChooser("Load Configurations", path);
        follow();
        UserInput::click(dialog, "pushButton_load");
    });
}

void loadChooser(Scene &scene)
{
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.pullUnderChooser();
        UserInput::click(dialog, "pushButton_load");
    });
}

// The chooser itself says that there is no such file.
void noSuchFileBox(Scene &scene)
{
    scene.frontEnd.openList([&scene](QDialog *dialog) {
        scene.expect("QFileDialog", [&scene](QDialog *chooser) {
            scene.pullUnderBox();
            auto *name = UserInput::named<QLineEdit>(chooser, "fileNameEdit");
            name->setText(scene.home.filePath("none.dat"));
            QTest::keyClick(name, Qt::Key_Return);
        });
        UserInput::click(dialog, "pushButton_load");
    });
}

void loadDialog(Scene &scene)
{
    loading(scene, scene.configurationFile(),
            [&scene] { scene.expect("ConfigLoadDlgClass", scene.pull); });
}

void loadedBox(Scene &scene)
{
    loading(scene, scene.configurationFile(), [&scene] {
        scene.expect("ConfigLoadDlgClass",
                     [](QDialog *dialog) { UserInput::click(dialog, "pushButton_load"); });
        scene.pullUnderBox();
    });
}

void loadFailedBox(Scene &scene)
{
    scene.fail("/^system import 'config'/");
    loadedBox(scene);
}

// The button is off while nothing is selected; the slot is there all the same.
void nothingLoadedBox(Scene &scene)
{
    loading(scene, scene.configurationFile(), [&scene] {
        scene.expect("ConfigLoadDlgClass", [](QDialog *dialog) {
            UserInput::click(dialog, "pushButton_clearSelection");
            QMetaObject::invokeMethod(dialog, "on_pushButton_load_clicked");
        });
        scene.pullUnderBox();
    });
}

void noContactAfterLoad(Scene &scene)
{
    scene.fail("config number_of_configs#2");
    loading(scene, scene.configurationFile(), [&scene] {
        scene.expect("ConfigLoadDlgClass",
                     [](QDialog *dialog) { UserInput::click(dialog, "pushButton_exit"); });
        scene.pullUnderBox();
    });
}

void unreadableBox(Scene &scene)
{
    const QString path = scene.madeBackup();
    // The schema allows a backup without a domain; restoring does not.
    TransferFiles::write(path, TransferFiles::contentsOf(path).replace("lab.example", ""));
    loading(scene, path, [&scene] { scene.pullUnderBox(); });
}

void lockedBox(Scene &scene)
{
    const QString path = scene.madeBackup();
    scene.frontEnd.controller.execute("config new_password 'right'");
    loading(scene, path, [&scene] { scene.pullUnderBox(); });
}

void restoreQuestion(Scene &scene)
{
    loading(scene, scene.madeBackup(), [&scene] { scene.pullUnderBox(); });
}

void unfitBox(Scene &scene)
{
    const QString path = TransferFiles::write(scene.home.filePath("empty.xml"), "<ZOR/>");
    loading(scene, path, [&scene] {
        scene.answer(QMessageBox::Yes);
        scene.pullUnderBox();
    });
}

void networkQuestion(Scene &scene)
{
    loading(scene, scene.madeBackup(), [&scene] {
        scene.answer(QMessageBox::Yes);
        scene.pullUnderBox();
    });
}

void restoredBox(Scene &scene)
{
    loading(scene, scene.madeBackup(), [&scene] {
        scene.answer(QMessageBox::Yes);
        scene.answer(QMessageBox::Yes);
        scene.pullUnderBox();
    });
}

void restoreFailedBox(Scene &scene)
{
    scene.fail("/^system import 'config'/");
    restoredBox(scene);
}

void incompleteCascadeBox(Scene &scene)
{
    scene.fail("cascade connected_slave_available *");
    restoredBox(scene);
}

void noContactAfterRestore(Scene &scene)
{
    const QString path = scene.madeBackup();
    loading(scene, path, [&scene] {
        scene.answer(QMessageBox::Yes);
        scene.answer(QMessageBox::Yes);
        scene.expect("", [&scene](QDialog *box) {
            scene.fail("config number_of_configs");
            box->accept();
        });
        scene.pullUnderBox();
    });
}

struct Row
{
    const char *name;
    Play play;
};

const Row rows[] = {
    {"list", list},
    {"no contact", noContact},
    {"no contact after an activation", noContactAfterActivation},
    {"no contact after activating a locked one", noContactAfterDoubleClickOnLocked},
    {"deletion", deletion},
    {"deletion by key", deletionByKey},
    {"no contact after a deletion", noContactAfterDeletion},
    {"new dialog", newDialog},
    {"new dialog's warning", newWarning},
    {"no contact after a new one", noContactAfterNew},
    {"edit dialog", editDialog},
    {"edit dialog by double click", editDialogByDoubleClick},
    {"edit dialog's warning", editWarning},
    {"no contact after an edit", noContactAfterEdit},
    {"no contact after an edit by double click", noContactAfterEditByDoubleClick},
    {"lock dialog", lockDialog},
    {"lock dialog's warning", lockWarning},
    {"different passwords", lockMismatch},
    {"no contact after locking", noContactAfterLock},
    {"unlock dialog", unlockDialog},
    {"unlock dialog's warning", unlockWarning},
    {"wrong password", wrongPassword},
    {"wrong super password", wrongSuperPassword},
    {"no contact after unlocking", noContactAfterUnlock},
    {"save dialog", saveDialog},
    {"save chooser", saveChooser},
    {"overwrite question", overwriteQuestion},
    {"saved", savedBox},
    {"save failed", saveFailedBox},
    {"save aborted", saveAbortedBox},
    {"backup chooser", backupChooser},
    {"backed up", backedUpBox},
    {"backup failed", backupFailedBox},
    {"backup cannot be written", backupUnwritableBox},
    {"load chooser", loadChooser},
    {"load chooser's no such file", noSuchFileBox},
    {"load dialog", loadDialog},
    {"loaded", loadedBox},
    {"load failed", loadFailedBox},
    {"nothing loaded", nothingLoadedBox},
    {"no contact after a load", noContactAfterLoad},
    {"restore cannot read", unreadableBox},
    {"restore with a locked one", lockedBox},
    {"restore question", restoreQuestion},
    {"restore does not fit", unfitBox},
    {"network question", networkQuestion},
    {"restored", restoredBox},
    {"restore failed", restoreFailedBox},
    {"incomplete cascade", incompleteCascadeBox},
    {"no contact after a restore", noContactAfterRestore},
};

} // namespace

Q_DECLARE_METATYPE(Play)

class TestEndToEndHostExit : public QObject
{
    Q_OBJECT

private slots:
    void theHostReleasesTheModule_data()
    {
        QTest::addColumn<Play>("play");
        for (const Row &row : rows) {
            QTest::newRow(row.name) << row.play;
        }
    }

    void theHostReleasesTheModule()
    {
        QFETCH(Play, play);
        run(play, [](FrontEnd &frontEnd) { frontEnd.release(); });
    }

    void theHostDestroysItsWindow_data() { theHostReleasesTheModule_data(); }

    void theHostDestroysItsWindow()
    {
        QFETCH(Play, play);
        run(play, [](FrontEnd &frontEnd) { frontEnd.destroyWindow(); });
    }

    void theHostDoesBoth_data() { theHostReleasesTheModule_data(); }

    void theHostDoesBoth()
    {
        QFETCH(Play, play);
        run(play, [](FrontEnd &frontEnd) {
            frontEnd.release();
            frontEnd.destroyWindow();
            frontEnd.release();
        });
    }

    void theHostQuits_data() { theHostReleasesTheModule_data(); }

    // All windows close and all event loops end, the host's own at last; then the host cleans up.
    void theHostQuits()
    {
        QFETCH(Play, play);
        Scene scene(unlockedSample());
        int pulls = 0;
        scene.pull = [&pulls](QDialog *) {
            ++pulls;
            QApplication::closeAllWindows();
            QCoreApplication::quit();
        };
        QTimer::singleShot(0, this, [&scene, play] {
            play(scene);
            QCoreApplication::quit(); // however the play went
        });
        QCoreApplication::exec();
        QCOMPARE(pulls, 1);
        scene.frontEnd.release();
        QCOMPARE(scene.frontEnd.channel.receiverCount(), 0);
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(!QGuiApplication::overrideCursor());
    }

private:
    static void run(Play play, const std::function<void(FrontEnd &)> &pull)
    {
        Scene scene(unlockedSample());
        int pulls = 0;
        scene.pull = [&](QDialog *window) {
            const QPointer<QDialog> watched(window);
            ++pulls;
            pull(scene.frontEnd);
            // A box without a parent is nobody's; the user closes it.
            if (watched && watched->isVisible()) {
                QVERIFY(!watched->parentWidget());
                watched->reject();
            }
        };
        play(scene);
        QCOMPARE(pulls, 1);
        QCOMPARE(scene.frontEnd.channel.receiverCount(), 0);
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(!QGuiApplication::overrideCursor());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        scene.frontEnd.triggerAction(); // the menu may still show it
    }
};

VELTRA4_TEST(TestEndToEndHostExit)
#include "tst_endtoendhostexit.moc"
