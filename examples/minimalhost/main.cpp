// The smallest host: a window with the plug-in's menu, in front of a controller that holds nothing.

#include "hostapi/backendversions.h"
#include "hostapi/iomanager.h"
#include "hostapi/moduleinterface.h"

#include <QAction>
#include <QApplication>
#include <QDebug>
#include <QMainWindow>
#include <QMenuBar>
#include <QPluginLoader>

// A real channel formats the command, sends it, and waits for the answer.
class EmptyController final : public IOManager
{
public:
    int setTimeout(int, int, int) override { return 0; }
    int sendCommandReply(char *reply, const char *, ...) override { return answer(reply, '\0'); }
    int queryString(char *reply, const char *, ...) override { return answer(reply, '\0'); }
    int queryInt(int *value, const char *, ...) override { return answer(value, 0); }
    int queryDouble(double *value, const char *, ...) override { return answer(value, 1.0); }
    int queryBool(bool *value, const char *, ...) override { return answer(value, false); }
    int sendCommand(const char *, ...) override { return 0; }
    int postMessage(const char *category, const char *source, int, const char *text) override
    {
        qInfo() << category << source << text;
        return 0;
    }
    int addMessageReceiver(const char *, MessageReceiver *) override { return 0; }
    int removeMessageReceiver(const char *, MessageReceiver *) override { return 0; }

private:
    template <typename Value>
    static int answer(Value *target, Value value)
    {
        *target = value;
        return 0; // success
    }
};

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    EmptyController controller;
    BackendVersions versions{{4, 2, 0}, {1, 27, 0}, {4, 1, 0}, "Model"};
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
    const bool isTrial = QApplication::arguments().contains("--trial"); // nobody is there to quit
    const int result = isTrial ? 0 : QApplication::exec();
    module->release(); // before what it was given goes away
    return result;
}
