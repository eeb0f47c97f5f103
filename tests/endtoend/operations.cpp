#include "tests/endtoend/operations.h"

#include "tests/endtoend/table.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/userinput.h"

#include <QAbstractButton>
#include <QtTest>

namespace {

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

void createWithDefaults(Scene &scene)
{
    scene.useList([&scene](QDialog *list) {
        scene.expect("NewConfigurationDialog", [](QDialog *dialog) {
            UserInput::type(dialog, "lineEdit_desc", "x");
            UserInput::click(dialog, "radioButton_new");
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

// With a slave that the controller looks for in vain.
void makeBackupOfAStranger(Scene &scene)
{
    makeBackup(scene);
    QFile file(scene.file);
    QVERIFY(file.open(QIODevice::ReadWrite));
    const QByteArray document = file.readAll().replace("tracker-lab4", "tracker-lab9");
    QVERIFY(file.seek(0));
    file.write(document);
}

void makeBackupAndFailCascade(Scene &scene)
{
    makeBackup(scene);
    scene.failAlways("cascade connected_slave_available *");
}

} // namespace

Scene::Scene()
    : frontEnd(smallState())
{
}

void Scene::expect(const char *objectName, const Action &action)
{
    frontEnd.driver.expectDialog(QString::fromLatin1(objectName), [action](QDialog *window) {
        const QPointer<QDialog> watched(window);
        action(window);
        if (watched && watched->isVisible()) {
            watched->reject();
        }
    });
}

void Scene::expectChooser(const char *caption, const QString &path)
{
    frontEnd.driver.expectFileDialog(QString::fromLatin1(caption), path);
}

void Scene::answer(QMessageBox::StandardButton button)
{
    expect("",
           [button](QDialog *box) { qobject_cast<QMessageBox *>(box)->button(button)->click(); });
}

void Scene::useList(const Action &action)
{
    expect("ConfigurationDialog", action);
    frontEnd.tryAction();
}

void Scene::failAlways(const char *fault)
{
    QString error;
    QVERIFY2(frontEnd.channel.faults().add(QString::fromLatin1(fault), &error), qPrintable(error));
}

QVector<Operation> allOperations()
{
    return {
        {"first refresh", releaseFirst, offer},
        {"refresh", nothing, refresh},
        {"refresh with failures", failQueries, refresh},
        {"refresh without contact", failContact, hearOfNoContact},
        {"activation", nothing, activate},
        {"activation by double click", lockAnother, activateLocked},
        {"deletion", nothing, deleteOne},
        {"deletion by key", nothing, deleteByKey},
        {"new", nothing, create},
        {"new with default values", nothing, createWithDefaults},
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
        {"restore of an unknown slave", makeBackupOfAStranger, restore},
    };
}
