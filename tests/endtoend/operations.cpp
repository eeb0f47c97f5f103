#include "tests/endtoend/operations.h"

#include "tests/endtoend/transferfiles.h"

#include <QTest>

using namespace Story;

namespace {

Step together(const Steps &steps)
{
    return [steps](Scene &scene) {
        for (const Step &step : steps) {
            step(scene);
        }
    };
}

Step playing(const Steps &steps)
{
    return [steps](Scene &scene) { scene.tryToPlay(steps); };
}

Step clicking(const char *button, const Step &window)
{
    return playing({onList({click(button), leave}), window});
}

Step backingUp()
{
    return playing(backUp("backup.xml", answer(QMessageBox::Ok)));
}

Step saving()
{
    return playing({onList({click("pushButton_save"), leave}),
                    onSave({click("checkBox_allSettings"), click("pushButton_save"), leave}),
                    chooseToSave("new.dat"), answer(QMessageBox::Ok)});
}

Step restoring()
{
    return playing(
        load("backup.xml",
             {answer(QMessageBox::Yes), answer(QMessageBox::Yes), answer(QMessageBox::Ok)}));
}

// Without waiting for the time of the automatic backup to come.
void backUpAutomatically(Scene &scene)
{
    auto *dialog = scene.window->findChild<QDialog *>("ConfigSaveDlgClass");
    scene.tellVersion(HostVersion::current);
    QVERIFY(QMetaObject::invokeMethod(dialog, "doAutomaticBackup"));
}

// The cascade differs from the one in the backup afterwards.
void makeBackup(Scene &scene)
{
    scene.play(backUp("backup.xml"));
    scene.controller.execute("veltra2 cascade sub_slave tracker-lab4");
    scene.controller.execute("veltra2 cascade add_slave tracker-hall1");
}

// With a slave that the controller looks for in vain.
void makeBackupOfAStranger(Scene &scene)
{
    makeBackup(scene);
    const QString path = scene.filePath("backup.xml");
    TransferFiles::write(path,
                         TransferFiles::contentsOf(path).replace("tracker-lab4", "tracker-lab9"));
}

} // namespace

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

QVector<Operation> allOperations()
{
    const Step nothing = [](Scene &) {};
    const Step refreshing = playing({onList({leave})});
    const Step lockActive = execute("config new_password 'right'");
    const Step lockAnother = together({execute("config active_config " + Sample::fair), lockActive,
                                       execute("config active_config " + Sample::active)});
    const Step failBackup = fault("system download 2");
    const Actions edit = {type("lineEdit_desc", "x"), press(Qt::Key_Return)};
    return {
        {"first refresh", [](Scene &scene) { scene.release(); },
         [](Scene &scene) { scene.offerAction(); }},
        {"refresh", nothing, refreshing},
        {"refresh with failures",
         together({fault("config free_space"), fault("/^config (owner|desc)_of_config/")}),
         refreshing},
        {"refresh without contact", fault("config number_of_configs"),
         playing({answer(QMessageBox::Ok)})},
        {"activation", nothing,
         playing({onList({selectRow(Sample::fairText), click("pushButton_apply"), leave})})},
        {"activation by double click", lockAnother,
         playing({onList({doubleClickRow(Sample::fairText), leave})})},
        {"deletion", nothing, clicking("pushButton_delete", answer(QMessageBox::Ok))},
        {"deletion by key", nothing,
         playing({onList({press(Qt::Key_Delete), leave}), answer(QMessageBox::Ok)})},
        {"new", nothing,
         clicking("pushButton_new",
                  onNew({type("lineEdit_desc", "x"), click("pushButton_create")}))},
        {"new with default values", nothing,
         clicking("pushButton_new",
                  onNew({type("lineEdit_desc", "x"), click("radioButton_new"),
                         click("pushButton_create")}))},
        {"edit", nothing, clicking("pushButton_edit", onEdit(edit))},
        {"edit by double click", nothing,
         playing({onList({doubleClickRow(Sample::fairText), leave}), onEdit(edit)})},
        {"lock", nothing,
         clicking("pushButton_lock",
                  onLock({type("lineEdit_new_password", "a"),
                          type("lineEdit_new_password_repeat", "a"), click("pushButton_ok")}))},
        {"unlock", lockActive,
         clicking("pushButton_lock",
                  onUnlock({type("lineEdit_password", "right"), click("pushButton_ok")}))},
        {"unlock by super password", lockActive,
         clicking("pushButton_lock",
                  onUnlock({click("checkBox_use_super_password"),
                            type("lineEdit_password", "super"), press(Qt::Key_Return)}))},
        {"save", nothing, saving()},
        {"save with failures", together({fault("/clone_config/#2"), fault("/delete_config/")}),
         saving()},
        {"manual backup", nothing, backingUp()},
        {"failing manual backup", failBackup, backingUp()},
        {"automatic backup", nothing, backUpAutomatically},
        {"failing automatic backup", failBackup, backUpAutomatically},
        {"load", makeFile("some.dat", {Sample::fair, Sample::active}),
         playing(load("some.dat", {onLoad({click("pushButton_load")}), answer(QMessageBox::Ok)}))},
        {"restore", makeBackup, restoring()},
        {"restore of an incomplete cascade",
         together({makeBackup, fault("cascade connected_slave_available *")}), restoring()},
        {"restore of an unknown slave", makeBackupOfAStranger, restoring()},
    };
}

void addOperations()
{
    QTest::addColumn<Operation>("operation");
    for (const Operation &operation : allOperations()) {
        QTest::newRow(operation.name) << operation;
    }
}
