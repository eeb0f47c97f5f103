// Uses the plug-in in whatever host it is loaded into, by mouse and keyboard: lists, unlocks, backs
// up, deletes and restores, in front of the simulator's sample. Its file goes to the home folder.
//
//     QT_PLUGIN_PATH=FOLDER QT_QPA_GENERIC_PLUGINS=operator HOST
//
// It tells what it has done; after the last step it closes the host's window, after the first one
// that went wrong it aborts the host.

#include "tests/endtoend/table.h"
#include "tests/support/modaldriver.h"
#include "tests/support/userinput.h"

#include <QAction>
#include <QPushButton>
#include <QApplication>
#include <QDir>
#include <QGenericPlugin>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>

namespace {

const QString activeText = "Robot cell 2, tool centre point";
const QString activeRow = activeText + " | R. Okafor | no";
const QString lockedText = "Acceptance test, length bar 1.5 m";
const QString unlockedRow = QStringLiteral("* %1 | metrology lab | no").arg(lockedText);

void require(bool isTrue, const QString &otherwise)
{
    if (!isTrue) {
        qFatal("operator: %s", qPrintable(otherwise));
    }
}

QString homePath(const QString &name)
{
    return QDir::home().filePath(name);
}

bool hasBackupOfTheDay()
{
    const QDir folder(homePath(".ZOR/VELTRA4/v4.2.0/backup"));
    return !folder.entryList({"backup_*_tracker-lab2.xml"}).isEmpty();
}

QMainWindow *hostWindow()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<QMainWindow *>(widget)) {
            return window;
        }
    }
    return nullptr;
}

class Operator final : public QObject
{
public:
    Operator() { QTimer::singleShot(0, this, &Operator::begin); }

private:
    /// Once the backup of the day has been made, which would come in between.
    void begin()
    {
        m_window = hostWindow();
        if (m_window == nullptr || !hasBackupOfTheDay()) {
            constexpr int pauseMs = 50;
            QTimer::singleShot(pauseMs, this, &Operator::begin);
            return;
        }
        work();
        m_window->close();
    }

    void work()
    {
        useList("listed", [this](QDialog *list) { lookAt(list); });
        useList("unlocked", [this](QDialog *list) { unlock(list); });
        useList("backed up", [this](QDialog *list) { backUp(list); });
        useList("deleted", [this](QDialog *list) { deleteOne(list); });
        useList("restored", [this](QDialog *list) { restore(list); });
    }

    template <typename Step>
    void useList(const char *done, Step step)
    {
        m_driver.expectDialog("ConfigurationDialog", [&](QDialog *list) {
            step(list);
            UserInput::click(list, "pushButton_exit");
        });
        menuAction()->trigger();
        const QStringList problems = m_driver.takeProblems();
        require(problems.isEmpty(), problems.join("; "));
        qInfo("operator: %s", done);
    }

    QAction *menuAction() const
    {
        for (const QAction *menu : m_window->menuBar()->actions()) {
            for (QAction *action : menu->menu()->actions()) {
                if (action->text() == "&Configurations") {
                    return action;
                }
            }
        }
        qFatal("operator: the host has no such menu");
    }

    void expectBox(const QString &title, const QString &text)
    {
        m_driver.expectBox({QMessageBox::Information, title, text});
    }

    void expectQuestion(const QString &title, QMessageBox::StandardButton answer)
    {
        m_driver.expectDialog(QString(), [title, answer](QDialog *dialog) {
            require(dialog->windowTitle() == title, dialog->windowTitle());
            qobject_cast<QMessageBox *>(dialog)->button(answer)->click();
        });
    }

    static void lookAt(QDialog *list)
    {
        const QStringList lines = Table::lines(list);
        require(lines.size() == 12 && lines.contains("* " + activeRow), lines.join('\n'));
    }

    // While anything is locked, nothing can be restored.
    void unlock(QDialog *list)
    {
        Table::click(list, lockedText);
        UserInput::click(list, "pushButton_apply");
        m_driver.expectDialog("UnlockConfigurationDialog", [](QDialog *dialog) {
            UserInput::type(dialog, "lineEdit_password", "lock");
            UserInput::click(dialog, "pushButton_ok");
        });
        UserInput::click(list, "pushButton_lock");
        require(Table::lines(list).contains(unlockedRow), Table::lines(list).join('\n'));
    }

    void backUp(QDialog *list)
    {
        m_driver.expectDialog("ConfigSaveDlgClass", [&](QDialog *dialog) {
            m_driver.expectFileDialog("Backup all settings", homePath("backup.xml"));
            expectBox("Success", "Backup created!");
            UserInput::click(dialog, "pushButton_save");
            UserInput::click(dialog, "pushButton_exit");
        });
        UserInput::click(list, "pushButton_save");
    }

    void deleteOne(QDialog *list)
    {
        Table::click(list, activeText);
        expectQuestion("Warning", QMessageBox::Ok);
        UserInput::click(list, "pushButton_delete");
        require(Table::lines(list).filter(activeText).isEmpty(), Table::lines(list).join('\n'));
    }

    void restore(QDialog *list)
    {
        m_driver.expectFileDialog("Load Configurations", homePath("backup.xml"));
        expectQuestion("Confirmation", QMessageBox::Yes);
        expectQuestion("Confirmation", QMessageBox::No); // host name and address
        expectBox("Success", "Backup restored!");
        UserInput::click(list, "pushButton_load");
        const QStringList lines = Table::lines(list);
        require(lines.contains(unlockedRow) && lines.contains(activeRow), lines.join('\n'));
    }

    QMainWindow *m_window = nullptr;
    ModalDriver m_driver;
};

} // namespace

class OperatorPlugin final : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "operator.json")

public:
    QObject *create(const QString & /*name*/, const QString & /*arguments*/) override
    {
        return new Operator;
    }
};

#include "operator.moc"
