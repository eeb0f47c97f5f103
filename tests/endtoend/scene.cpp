#include "tests/endtoend/scene.h"

#include "tests/endtoend/table.h"
#include "tests/endtoend/transferfiles.h"
#include "tests/support/userinput.h"

#include <QAbstractButton>
#include <QTest>

namespace {

Story::Step choose(const char *caption, const QString &name)
{
    return [caption, name](Scene &scene) {
        scene.driver.expectFileDialog(QString::fromLatin1(caption), scene.filePath(name));
    };
}

} // namespace

void Scene::play(const QVector<Step> &steps)
{
    tryToPlay(steps);
    driver.verify();
    QVERIFY2(!isCutShort, "a window died before the user was done with it");
}

void Scene::tryToPlay(const QVector<Step> &steps)
{
    for (const Step &step : steps) {
        step(*this);
    }
    action()->trigger();
}

Story::Action Story::click(const QByteArray &button)
{
    return [button](QDialog *window) { UserInput::click(window, button); };
}

Story::Action Story::type(const char *lineEdit, const QString &text)
{
    return [lineEdit, text](QDialog *window) { UserInput::type(window, lineEdit, text); };
}

Story::Action Story::press(Qt::Key key)
{
    return [key](QDialog *window) { UserInput::press(window, key); };
}

Story::Action Story::selectRow(const QString &row)
{
    return [row](QDialog *window) { Table::click(window, row); };
}

Story::Action Story::doubleClickRow(const QString &row)
{
    return [row](QDialog *window) { Table::doubleClick(window, row); };
}

Story::Action Story::selectOnly(const QStringList &rows)
{
    return [rows](QDialog *window) {
        UserInput::click(window, "pushButton_clearSelection");
        for (const QString &row : rows) {
            Table::click(window, row, Qt::ControlModifier);
        }
    };
}

Story::Action Story::see(const QString &line)
{
    return [line](QDialog *window) {
        const QStringList lines = Table::lines(window);
        QVERIFY2(lines.contains(line), qPrintable(lines.join('\n')));
    };
}

void Story::leave(QDialog *window)
{
    window->reject();
}

Story::Step Story::on(const QString &objectName, const Actions &actions)
{
    return [objectName, actions](Scene &scene) {
        scene.driver.expectDialog(objectName, [actions, &scene](QDialog *window) {
            const QPointer<QDialog> watched(window);
            for (const Action &action : actions) {
                if (!watched) {
                    scene.isCutShort = true;
                    return;
                }
                action(window);
            }
        });
    };
}

Story::Step Story::onList(const Actions &actions)
{
    return on("ConfigurationDialog", actions);
}

Story::Step Story::onNew(const Actions &actions)
{
    return on("NewConfigurationDialog", actions);
}

Story::Step Story::onEdit(const Actions &actions)
{
    return on("EditConfigDialog", actions);
}

Story::Step Story::onLock(const Actions &actions)
{
    return on("LockConfigurationDialog", actions);
}

Story::Step Story::onUnlock(const Actions &actions)
{
    return on("UnlockConfigurationDialog", actions);
}

Story::Step Story::onSave(const Actions &actions)
{
    return on("ConfigSaveDlgClass", actions);
}

Story::Step Story::onLoad(const Actions &actions)
{
    return on("ConfigLoadDlgClass", actions);
}

Story::Step Story::chooseToSave(const QString &name)
{
    return choose("Save configuration(s)", name);
}

Story::Step Story::chooseToBackUp(const QString &name)
{
    return choose("Backup all settings", name);
}

Story::Step Story::chooseToLoad(const QString &name)
{
    return choose("Load Configurations", name);
}

Story::Step Story::box(const ExpectedBox &expected)
{
    return [expected](Scene &scene) { scene.driver.expectBox(expected); };
}

Story::Step Story::savedBox(const QString &name)
{
    return [name](Scene &scene) {
        scene.driver.expectBox(
            {QMessageBox::Information, "Save Configurations",
             "Configuration data successfully written to the file\n" + scene.filePath(name)});
    };
}

Story::Step Story::backedUpBox()
{
    return box({QMessageBox::Information, "Success", "Backup created!"});
}

Story::Step Story::loadedBox()
{
    return box(
        {QMessageBox::Information, "Load Configurations", "Loading configuration successfully."});
}

Story::Step Story::answer(QMessageBox::StandardButton button)
{
    return on("", {[button](QDialog *window) {
                  qobject_cast<QMessageBox *>(window)->button(button)->click();
              }});
}

Story::Step Story::fault(const QString &rule)
{
    return [rule](Scene &scene) {
        QString error;
        QVERIFY2(scene.channel.faults().add(rule, &error), qPrintable(error));
    };
}

Story::Step Story::execute(const QByteArray &command)
{
    return [command](Scene &scene) {
        QVERIFY2(scene.controller.execute(command).ok, command.constData());
    };
}

Story::Step Story::makeFile(const QString &name, const QByteArrayList &identifiers)
{
    return [name, identifiers](Scene &scene) {
        QVector<Archive::Item> items;
        for (const QByteArray &identifier : identifiers) {
            items << TransferFiles::item(configurationIn(scene.state(), identifier));
        }
        TransferFiles::write(scene.filePath(name), Archive::pack(items));
    };
}

Story::Steps Story::save(const QStringList &rows, const QString &name, const Steps &boxes)
{
    return Steps{onList({click("pushButton_save"), leave}),
                 onSave({click("checkBox_allSettings"), selectOnly(rows), click("pushButton_save"),
                         click("pushButton_exit")}),
                 chooseToSave(name)}
    + boxes;
}

Story::Steps Story::backUp(const QString &name, const Step &outcome)
{
    return {onList({click("pushButton_save"), leave}),
            onSave({click("pushButton_save"), click("pushButton_exit")}), // all is chosen at first
            chooseToBackUp(name), outcome};
}

Story::Steps Story::load(const QString &name, const Steps &windows)
{
    return Steps{onList({click("pushButton_load"), leave}), chooseToLoad(name)} + windows;
}
