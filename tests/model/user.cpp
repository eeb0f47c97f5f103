#include "tests/model/user.h"

#include "tests/endtoend/table.h"
#include "tests/support/userinput.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>

namespace {

void retype(const QDialog *dialog, const char *lineEdit, const QString &text)
{
    UserInput::named<QLineEdit>(dialog, lineEdit)->clear();
    UserInput::type(dialog, lineEdit, text);
}

void cancelIfOpen(QDialog *dialog, const char *button)
{
    if (dialog->isVisible()) {
        UserInput::click(dialog, button);
    }
}

void chooseRows(QDialog *dialog, const QVector<int> &rows)
{
    UserInput::click(dialog, "pushButton_clearSelection");
    for (int row : rows) {
        if (row < Table::in(dialog)->rowCount()) { // a wrong answer may have made it shorter
            Table::click(dialog, row, Qt::ControlModifier);
        }
    }
}

QStringList textsIn(const QDialog *dialog)
{
    const QTableWidget *table = Table::in(dialog);
    QStringList texts;
    for (int row = 0; row < table->rowCount(); ++row) {
        for (int column = 0; column < table->columnCount(); ++column) {
            texts << table->item(row, column)->text();
        }
    }
    return texts;
}

QStringList labelOf(const QDialog *dialog)
{
    return {UserInput::named<QLabel>(dialog, "label_configuration")->text()};
}

} // namespace

User::User(FrontEnd &frontEnd, Transcript &transcript)
    : m_frontEnd(frontEnd)
    , m_transcript(transcript)
{
    m_frontEnd.channel.setObserver(&m_transcript);
    m_frontEnd.driver.handleOthers([this](QWidget *window) { answer(window); });
}

void User::answer(QWidget *window)
{
    auto *box = qobject_cast<QMessageBox *>(window);
    if (!box) {
        return;
    }
    m_transcript.boxShown(*box);
    if (box->standardButtons().testFlag(QMessageBox::Cancel) && !m_isDeletionConfirmed) {
        box->button(QMessageBox::Cancel)->click();
    } else {
        ModalDriver::agree(box);
    }
}

void User::expect(const QString &objectName, const std::function<void(QDialog *)> &action)
{
    m_frontEnd.driver.expectDialog(objectName, action);
}

void User::open(const std::function<void(QDialog *)> &action)
{
    expect("ConfigurationDialog", action);
    m_frontEnd.action()->trigger();
}

void User::close(QDialog *list)
{
    UserInput::click(list, "pushButton_exit");
}

void User::clickRow(QDialog *list, int row)
{
    Table::click(list, row);
}

void User::doubleClick(QDialog *list, int row)
{
    Table::doubleClick(list, row);
}

void User::pressUpOrDown(QDialog *list, int step)
{
    UserInput::press(list, step < 0 ? Qt::Key_Up : Qt::Key_Down);
}

void User::apply(QDialog *list, Way way)
{
    if (way == Way::Key) {
        UserInput::press(list, Qt::Key_Return);
    } else {
        UserInput::click(list, "pushButton_apply");
    }
}

void User::deleteCurrent(QDialog *list, Way way, bool isConfirmed)
{
    m_isDeletionConfirmed = isConfirmed;
    if (way == Way::Key) {
        UserInput::press(list, Qt::Key_Delete);
    } else {
        UserInput::click(list, "pushButton_delete");
    }
}

void User::fillIn(const Form &form, const Attempts &attempts,
                  const std::function<QStringList(QDialog *)> &contents,
                  const std::function<void(QDialog *, const Attempt &)> &choose)
{
    expect(form.dialog, [=](QDialog *dialog) {
        m_transcript.tell(Transcript::windowLine(dialog->windowTitle(), contents(dialog)));
        for (int i = 0; i < attempts.size() && dialog->isVisible(); ++i) {
            retype(dialog, form.first, attempts.at(i).first);
            if (form.second != nullptr) {
                retype(dialog, form.second, attempts.at(i).second);
            }
            if (choose) {
                choose(dialog, attempts.at(i));
            }
            UserInput::click(dialog, form.ok);
        }
        cancelIfOpen(dialog, form.cancel);
    });
}

void User::createNew(QDialog *list, bool isClone, const Attempts &attempts)
{
    fillIn(
        {"NewConfigurationDialog", "lineEdit_desc", "lineEdit_owner", "pushButton_create",
         "pushButton_2"},
        attempts, [](QDialog *) { return QStringList(); },
        [isClone](QDialog *dialog, const Attempt &) {
            UserInput::click(dialog, isClone ? "radioButton_clone" : "radioButton_new");
        });
    UserInput::click(list, "pushButton_new");
}

void User::edit(QDialog *list, Way way, const Attempts &attempts)
{
    fillIn({"EditConfigDialog", "lineEdit_desc", "lineEdit_owner", "pushButton_ok", "pushButton_2"},
           attempts, [](QDialog *dialog) {
               return QStringList{UserInput::textOf(dialog, "lineEdit_desc"),
                                  UserInput::textOf(dialog, "lineEdit_owner"),
                                  UserInput::textOf(dialog, "lineEdit_configId")};
           });
    if (way == Way::DoubleClick) {
        doubleClick(list, Table::in(list)->currentRow());
    } else {
        UserInput::click(list, "pushButton_edit");
    }
}

void User::lock(QDialog *list, const Attempts &attempts)
{
    fillIn({"LockConfigurationDialog", "lineEdit_new_password", "lineEdit_new_password_repeat",
            "pushButton_ok", "pushButton_cancel"},
           attempts, labelOf);
    UserInput::click(list, "pushButton_lock");
}

void User::unlock(QDialog *list, const Attempts &attempts)
{
    fillIn({"UnlockConfigurationDialog", "lineEdit_password", nullptr, "pushButton_ok",
            "pushButton_cancel"},
           attempts, labelOf, [](QDialog *dialog, const Attempt &attempt) {
               const char *box = "checkBox_use_super_password";
               if (UserInput::named<QCheckBox>(dialog, box)->isChecked() != attempt.isSuper) {
                   UserInput::click(dialog, box);
               }
           });
    UserInput::click(list, "pushButton_lock");
}

void User::useSaveDialog(QDialog *list, const std::function<void(QDialog *)> &action)
{
    expect("ConfigSaveDlgClass", [this, action](QDialog *dialog) {
        m_transcript.tell(Transcript::windowLine(dialog->windowTitle(), textsIn(dialog)));
        action(dialog);
        UserInput::click(dialog, "pushButton_exit");
    });
    UserInput::click(list, "pushButton_save");
}

void User::save(QDialog *list, const FileChoice &choice)
{
    useSaveDialog(list, [this, choice](QDialog *dialog) {
        UserInput::click(dialog, "checkBox_allSettings");
        chooseRows(dialog, choice.rows);
        if (!choice.rows.isEmpty()) {
            m_frontEnd.driver.expectFileDialog("Save configuration(s)", choice.path);
        }
        UserInput::click(dialog, "pushButton_save");
    });
}

void User::backUp(QDialog *list, const QString &path)
{
    useSaveDialog(list, [this, path](QDialog *dialog) {
        m_frontEnd.driver.expectFileDialog("Backup all settings", path);
        UserInput::click(dialog, "pushButton_save");
    });
}

void User::load(QDialog *list, const FileChoice &choice)
{
    m_frontEnd.driver.expectFileDialog("Load Configurations", choice.path);
    if (!choice.path.isEmpty() && choice.opensDialog) {
        expect("ConfigLoadDlgClass", [this, choice](QDialog *dialog) {
            m_transcript.tell(Transcript::windowLine(dialog->windowTitle(), textsIn(dialog)));
            chooseRows(dialog, choice.rows);
            if (UserInput::widgetNamed(dialog, "pushButton_load")->isEnabled()) {
                UserInput::click(dialog, "pushButton_load");
            }
            cancelIfOpen(dialog, "pushButton_exit");
        });
    }
    UserInput::click(list, "pushButton_load");
}
