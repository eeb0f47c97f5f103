#include "host/hostoptions.h"
#include "host/hostsession.h"
#include "host/simulatedlink.h"
#include "tests/support/modaldriver.h"
#include "tests/support/userinput.h"
#include "tests/support/quickstyle.h"

#include <QAction>
#include <QApplication>
#include <QDate>
#include <QDir>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>

#include <cstdio>
#include <functional>

// The development host with a user who does one thing over and over:
//
//     victim save|manual|automatic|edit
//
// in the home directory, where the controller's state is in state.json. It says "round" on standard
// output before each time, and goes on until it is killed.

namespace {

HostOptions options()
{
    HostOptions options;
    options.pluginFile = VELTRA4_PLUGIN_PATH;
    return options;
}

class Victim
{
public:
    Victim();

    void save();
    void backUp();
    void backUpAutomatically();
    void edit();

private:
    void useList(const std::function<void(QDialog *)> &action);
    void useSaveDialog(const std::function<void(QDialog *)> &action);
    [[noreturn]] void repeat(const std::function<void()> &round);

    SimulatedLink m_link;
    HostSession m_session{m_link, options()};
    ModalDriver m_driver;
};

Victim::Victim()
{
    QString problem;
    if (!m_link.keepStateIn(QDir::home().filePath("state.json"), &problem)
        || !m_session.load(&problem)) {
        qFatal("%s", qPrintable(problem));
    }
    m_session.window().show();
    m_session.start();
    m_driver.handleOthers(ModalDriver::agree);
}

void Victim::save()
{
    useSaveDialog([this](QDialog *dialog) {
        UserInput::click(dialog, "checkBox_allSettings"); // only the configurations, all of them
        repeat([this, dialog] {
            m_driver.expectFileDialog("Save configuration(s)", QDir::home().filePath("saved.dat"));
            UserInput::click(dialog, "pushButton_save");
        });
    });
}

void Victim::backUp()
{
    useSaveDialog([this](QDialog *dialog) {
        repeat([this, dialog] {
            m_driver.expectFileDialog("Backup all settings", QDir::home().filePath("all.xml"));
            UserInput::click(dialog, "pushButton_save");
        });
    });
}

// As the timer does, for which a loop cannot wait.
void Victim::backUpAutomatically()
{
    auto *dialog = m_session.window().findChild<QDialog *>("ConfigSaveDlgClass");
    const QDir directory(QDir::home().filePath(".ZOR/VELTRA4/v4.12.3/backup"));
    const QString ofToday =
        QStringLiteral("backup_%1_*.xml").arg(QDate::currentDate().toString(Qt::ISODate));
    repeat([dialog, directory, ofToday] {
        // One a day is all that is made.
        QFile::remove(directory.filePath(directory.entryList({ofToday}).value(0)));
        QMetaObject::invokeMethod(dialog, "doAutomaticBackup");
    });
}

void Victim::edit()
{
    useList([this](QDialog *list) {
        int number = 0;
        repeat([this, list, &number] {
            ++number;
            m_driver.expectDialog("EditConfigDialog", [number](QDialog *dialog) {
                UserInput::named<QLineEdit>(dialog, "lineEdit_desc")
                    ->setText(QString::number(number));
                UserInput::click(dialog, "pushButton_ok");
            });
            UserInput::click(list, "pushButton_edit");
        });
    });
}

void Victim::useList(const std::function<void(QDialog *)> &action)
{
    m_driver.expectDialog("ConfigurationDialog", action);
    const QList<QAction *> menus = m_session.window().menuBar()->actions();
    for (const QAction *menu : menus) {
        const QList<QAction *> entries = menu->menu()->actions();
        for (QAction *entry : entries) {
            if (entry->text() == "&Configurations") {
                entry->trigger();
            }
        }
    }
}

void Victim::useSaveDialog(const std::function<void(QDialog *)> &action)
{
    useList([this, action](QDialog *list) {
        m_driver.expectDialog("ConfigSaveDlgClass", action);
        UserInput::click(list, "pushButton_save");
    });
}

void Victim::repeat(const std::function<void()> &round)
{
    for (;;) {
        std::puts("round");
        std::fflush(stdout);
        round();
        QCoreApplication::processEvents();
        const QStringList problems = m_driver.takeProblems();
        if (!problems.isEmpty()) {
            qFatal("%s", qPrintable(problems.join('\n')));
        }
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QuickStyle::use();
    const QString operation = QCoreApplication::arguments().value(1);
    Victim victim;
    if (operation == "save") {
        victim.save();
    } else if (operation == "manual") {
        victim.backUp();
    } else if (operation == "automatic") {
        victim.backUpAutomatically();
    } else if (operation == "edit") {
        victim.edit();
    }
    qFatal("it did not work");
}
