#include "tests/endtoend/scene.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/quickstyle.h"
#include "tests/support/testmain.h"
#include "tests/support/userinput.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QTimer>
#include <QTest>

using namespace Story;

namespace {

// A user at work, until the host takes everything away under the last window.
struct Play
{
    const char *name;
    Steps steps;
};

// Where the list cannot be read again afterwards.
const Step noLaterContact = fault("config number_of_configs#2");

// The schema allows a backup without a domain; restoring does not.
void removeDomain(Scene &scene)
{
    const QString path = scene.filePath("backup.xml");
    TransferFiles::write(path, TransferFiles::contentsOf(path).replace("lab.example", ""));
}

void emptyBackup(Scene &scene)
{
    TransferFiles::write(scene.filePath("backup.xml"), "<ZOR/>");
}

// Chosen for a file that is gone when it is to be written.
void makeVanishingFolder(Scene &scene)
{
    QDir(scene.filePath("")).mkpath("folder");
    scene.record.onCommand = [&scene](const QByteArray &command) {
        if (command == "system download 1") {
            QDir(scene.filePath("folder")).removeRecursively();
        }
    };
}

void chooseMissingFile(QDialog *chooser)
{
    auto *name = UserInput::named<QLineEdit>(chooser, "fileNameEdit");
    name->setText("/none.dat");
    QTest::keyClick(name, Qt::Key_Return);
}

void loseContactAndAgree(Scene &scene)
{
    scene.driver.expectDialog("", [&scene](QDialog *box) {
        fault("config number_of_configs")(scene);
        box->accept();
    });
}

// The button is off while nothing is selected; the slot is there all the same.
void loadNothing(QDialog *dialog)
{
    UserInput::click(dialog, "pushButton_clearSelection");
    QMetaObject::invokeMethod(dialog, "on_pushButton_load_clicked");
}

// A click on a button of the list, and what comes then.
Steps after(const char *button, const Steps &windows)
{
    return Steps{onList({click(button)})} + windows;
}

QVector<Play> listPlays(const Action &pull)
{
    const Step box = on("", {pull});
    return {
        {"list", {onList({pull})}},
        {"no contact", {fault("config number_of_configs"), box}},
        {"no contact after an activation",
         {noLaterContact, onList({selectRow(Sample::rotorText), click("pushButton_apply")}), box}},
        {"no contact after activating a locked one",
         {[](Scene &scene) { scene.controller.setState(ControllerState::sample()); },
          noLaterContact, onList({doubleClickRow(Sample::lockedText)}), box}},
        {"deletion", after("pushButton_delete", {box})},
        {"deletion by key", {onList({press(Qt::Key_Delete)}), box}},
        {"no contact after a deletion",
         {noLaterContact, onList({press(Qt::Key_Delete)}), answer(QMessageBox::Ok), box}},
    };
}

QVector<Play> descriptionPlays(const Action &pull)
{
    const Step box = on("", {pull});
    const Step edit = onEdit({type("lineEdit_desc", "x"), click("pushButton_ok")});
    const Step editNothing = onEdit(
        {[](QDialog *dialog) { UserInput::named<QLineEdit>(dialog, "lineEdit_desc")->clear(); },
         click("pushButton_ok")});
    return {
        {"new dialog", after("pushButton_new", {onNew({pull})})},
        {"new dialog's warning",
         after("pushButton_new", {onNew({click("pushButton_create")}), box})},
        {"no contact after a new one",
         after("pushButton_new",
               {noLaterContact, onNew({type("lineEdit_desc", "x"), click("pushButton_create")}),
                box})},
        {"edit dialog", after("pushButton_edit", {onEdit({pull})})},
        {"edit dialog by double click",
         {onList({doubleClickRow(Sample::fairText)}), onEdit({pull})}},
        {"edit dialog's warning", after("pushButton_edit", {editNothing, box})},
        {"no contact after an edit", after("pushButton_edit", {noLaterContact, edit, box})},
        {"no contact after an edit by double click",
         {noLaterContact, onList({doubleClickRow(Sample::fairText)}), edit, box}},
    };
}

QVector<Play> passwordPlays(const Action &pull)
{
    const Step box = on("", {pull});
    const auto lock = [](const char *password, const char *repetition, const Action &agree) {
        return onLock({type("lineEdit_new_password", password),
                       type("lineEdit_new_password_repeat", repetition), agree});
    };
    const auto unlock = [](const Step &dialog, const Steps &then) {
        return Steps{execute("config new_password 'right'")}
        + after("pushButton_lock", Steps{dialog} + then);
    };
    const Action ok = click("pushButton_ok");
    const Action wrong = type("lineEdit_password", "wrong");
    return {
        {"lock dialog", after("pushButton_lock", {onLock({pull})})},
        {"lock dialog's warning", after("pushButton_lock", {onLock({ok}), box})},
        {"different passwords",
         after("pushButton_lock", {lock("a", "b", press(Qt::Key_Return)), box})},
        {"no contact after locking",
         after("pushButton_lock", {noLaterContact, lock("a", "a", ok), box})},
        {"unlock dialog", unlock(onUnlock({pull}), {})},
        {"unlock dialog's warning", unlock(onUnlock({ok}), {box})},
        {"wrong password", unlock(onUnlock({wrong, press(Qt::Key_Return)}), {box})},
        {"wrong super password",
         unlock(onUnlock({click("checkBox_use_super_password"), wrong, ok}), {box})},
        {"no contact after unlocking",
         unlock(onUnlock({type("lineEdit_password", "right"), ok}), {noLaterContact, box})},
    };
}

QVector<Play> savePlays(const Action &pull)
{
    const Step box = on("", {pull});
    const Step chooser = on("QFileDialog", {pull});
    const auto save = [](const Steps &then) {
        return after("pushButton_save",
                     Steps{onSave({click("checkBox_allSettings"), selectOnly({Sample::fairText}),
                                   click("pushButton_save")})}
                         + then);
    };
    const auto backUp = [](const Steps &then) {
        return after("pushButton_save", Steps{onSave({click("pushButton_save")})} + then);
    };
    return {
        {"save dialog", after("pushButton_save", {onSave({pull})})},
        {"save chooser", save({chooser})},
        {"overwrite question",
         save({makeFile("some.dat", {Sample::fair}), chooseToSave("some.dat"), box})},
        {"saved", save({chooseToSave("new.dat"), box})},
        {"save failed", save({fault("system download 3"), chooseToSave("new.dat"), box})},
        {"save aborted", save({fault("system download prepare *"), chooseToSave("new.dat"), box})},
        {"backup chooser", backUp({chooser})},
        {"backed up", backUp({chooseToBackUp("new.xml"), box})},
        {"backup failed",
         backUp({fault("system controller_embedded"), chooseToBackUp("new.xml"), box})},
        {"backup cannot be written",
         backUp({makeVanishingFolder, chooseToBackUp("folder/new.xml"), box})},
    };
}

QVector<Play> loadPlays(const Action &pull)
{
    const Step box = on("", {pull});
    const auto load = [](const Steps &then) {
        return Steps{makeFile("some.dat", {Sample::fair})}
        + after("pushButton_load", Steps{chooseToLoad("some.dat")} + then);
    };
    const Step loadAll = onLoad({click("pushButton_load")});
    return {
        {"load chooser", after("pushButton_load", {on("QFileDialog", {pull})})},
        // The chooser itself says that there is no such file.
        {"load chooser's no such file",
         after("pushButton_load", {on("QFileDialog", {chooseMissingFile}), box})},
        {"load dialog", load({onLoad({pull})})},
        {"loaded", load({loadAll, box})},
        {"load failed", load({fault("/^system import 'config'/"), loadAll, box})},
        {"nothing loaded", load({onLoad({loadNothing}), box})},
        {"no contact after a load",
         load({noLaterContact, onLoad({click("pushButton_exit")}), box})},
    };
}

QVector<Play> restorePlays(const Action &pull)
{
    const Step box = on("", {pull});
    const Step yes = answer(QMessageBox::Yes);
    const auto restore = [](const Steps &then) {
        return Steps{[](Scene &scene) { scene.play(Story::backUp("backup.xml")); }}
        + after("pushButton_load", Steps{chooseToLoad("backup.xml")} + then);
    };
    return {
        {"restore cannot read", restore({removeDomain, box})},
        {"restore with a locked one", restore({execute("config new_password 'right'"), box})},
        {"restore question", restore({box})},
        {"restore does not fit", restore({emptyBackup, yes, box})},
        {"network question", restore({yes, box})},
        {"restored", restore({yes, yes, box})},
        {"restore failed", restore({fault("/^system import 'config'/"), yes, yes, box})},
        {"incomplete cascade",
         restore({fault("cascade connected_slave_available *"), yes, yes, box})},
        {"no contact after a restore", restore({yes, yes, loseContactAndAgree, box})},
    };
}

QVector<Play> plays(const Action &pull)
{
    return listPlays(pull) + descriptionPlays(pull) + passwordPlays(pull) + savePlays(pull)
        + loadPlays(pull) + restorePlays(pull);
}

} // namespace

class TestEndToEndHostExit : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QuickStyle::use(); }

    void theHostReleasesTheModule_data() { addPlays(); }

    void theHostReleasesTheModule()
    {
        run([](FrontEnd &frontEnd) { frontEnd.release(); });
    }

    void theHostDestroysItsWindow_data() { addPlays(); }

    void theHostDestroysItsWindow()
    {
        run([](FrontEnd &frontEnd) { frontEnd.destroyWindow(); });
    }

    void theHostDoesBoth_data() { addPlays(); }

    void theHostDoesBoth()
    {
        run([](FrontEnd &frontEnd) {
            frontEnd.release();
            frontEnd.destroyWindow();
            frontEnd.release();
        });
    }

    void theHostQuits_data() { addPlays(); }

    // All windows close and all event loops end, the host's own at last; then the host cleans up.
    void theHostQuits()
    {
        Scene scene(Sample::light());
        int pulls = 0;
        const Steps steps = stepsUntil([&pulls](QDialog *) {
            ++pulls;
            QApplication::closeAllWindows();
            QCoreApplication::quit();
        });
        QTimer::singleShot(0, this, [&] {
            scene.play(steps);
            QCoreApplication::quit(); // however the play went
        });
        QCoreApplication::exec();
        QCOMPARE(pulls, 1);
        scene.release();
        verifyNothingIsLeft(scene);
    }

private:
    static void addPlays()
    {
        QTest::addColumn<int>("index");
        const QVector<Play> all = plays({});
        for (int i = 0; i < all.size(); ++i) {
            QTest::newRow(all.at(i).name) << i;
        }
    }

    static Steps stepsUntil(const Action &pull)
    {
        QFETCH(const int, index);
        return plays(pull).at(index).steps;
    }

    static void run(const std::function<void(FrontEnd &)> &pull)
    {
        Scene scene(Sample::light());
        int pulls = 0;
        scene.play(stepsUntil([&](QDialog *window) {
            const QPointer<QDialog> watched(window);
            ++pulls;
            pull(scene);
            // A box without a parent is nobody's; the user closes it.
            if (watched && watched->isVisible()) {
                QVERIFY(!watched->parentWidget());
                watched->reject();
            }
        }));
        QCOMPARE(pulls, 1);
        verifyNothingIsLeft(scene);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        scene.triggerAction(); // the menu may still show it
    }

    static void verifyNothingIsLeft(const Scene &scene)
    {
        QCOMPARE(scene.channel.receiverCount(), 0);
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(!QGuiApplication::overrideCursor());
    }
};

VELTRA4_TEST(TestEndToEndHostExit)
#include "tst_endtoendhostexit.moc"
