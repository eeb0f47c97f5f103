// The smallest host: a window with the plug-in's menu, in front of a mere echo.

#include "hostapi/backendversions.h"
#include "hostapi/iomanager.h"
#include "hostapi/moduleinterface.h"

#include <QApplication>
#include <QDebug>
#include <QMainWindow>
#include <QMenuBar>
#include <QPluginLoader>

#include <cstdarg>

// A real channel sends the command and waits for the answer; here the command is the answer.
class EchoingController final : public IOManager
{
public:
    int setTimeout(int, int, int) override { return 0; }
    int sendCommandReply(char *, const char *, ...) override { return 1; }
    int queryString(char *reply, const char *format, ...) override
    {
        char answer[200]; // as many as there are in the reply, one of them for the NUL
        va_list arguments;
        va_start(arguments, format);
        const int length = std::vsnprintf(answer, sizeof answer, format, arguments);
        va_end(arguments);
        if (length < 0 || length >= int(sizeof answer)) {
            return 1; // anything but 0 is a failure, and leaves the reply as it was
        }
        qstrcpy(reply, answer);
        return 0;
    }
    int queryInt(int *value, const char *, ...) override { return *value = 1, 0; }
    int queryDouble(double *, const char *, ...) override { return 1; }
    int queryBool(bool *, const char *, ...) override { return 1; }
    int sendCommand(const char *, ...) override { return 1; }
    int postMessage(const char *category, const char *source, int, const char *text) override
    {
        qInfo() << category << source << text;
        return 0;
    }
    int addMessageReceiver(const char *, MessageReceiver *) override { return 0; }
    int removeMessageReceiver(const char *, MessageReceiver *) override { return 0; }
};

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    EchoingController controller;
    BackendVersions versions{{4, 2, 0}, {1, 26, 0}, {4, 1, 0}, "Model"};
    QMainWindow window;

    QPluginLoader loader(MODULE_PATH);
    auto *const module = qobject_cast<ModuleInterface *>(loader.instance());
    if (!module) {
        qCritical() << loader.errorString();
        return 1;
    }
    module->setProperty("CommandManager", QVariant::fromValue<IOManager *>(&controller));
    module->setProperty("BackendVersions", QVariant::fromValue(&versions));
    module->setProperty("ModuleParent", QVariant::fromValue<QWidget *>(&window));
    module->setProperty("ObserverMode", false);
    qInfo() << module->moduleName() << module->moduleVersion() << "from" << loader.fileName();

    const QList<ModuleMenuEntry *> entries = module->menuEntries(); // asks the controller
    for (const ModuleMenuEntry *entry : entries) {
        window.menuBar()->addMenu(entry->menuTitle)->addAction(entry->action);
        qInfo() << entry->menuTitle << "has" << entry->action->text();
    }
    window.show();
    const int result = QApplication::arguments().contains("--trial") ? 0 : QApplication::exec();
    module->release(); // before what it was given goes away
    return result;
}
