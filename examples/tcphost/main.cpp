// A complete host in front of a controller in the network, one served by veltra2-simulator:
//
//     tcphost [HOST [PORT]]

#include "hostapi/backendversions.h"
#include "hostapi/moduleinterface.h"
#include "tcpchannel.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPluginLoader>
#include <QStatusBar>
#include <QTimer>

namespace {

// What the host knows of its controller; no command tells it. The model is the same text whenever
// and wherever this host runs, or backups that it made would be refused.
BackendVersions knownVersions()
{
    return {{4, 2, 0}, {1, 27, 0}, {4, 1, 0}, "VELTRA2 Model 5"};
}

// Asks on the host's own behalf, with a time-out of its own: the plug-in's last one is still set.
QString activeDescription(IOManager &channel)
{
    char description[200] = "(unknown)";
    channel.setTimeout(0, 5000, 0);
    channel.queryString(description, "config desc");
    return QString::fromLatin1(description).remove('"');
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const QString controller = arguments.value(1, "127.0.0.1");
    const quint16 port = arguments.value(2, "4711").toUShort();

    QMainWindow window;
    auto *events = new QPlainTextEdit(&window);
    events->setReadOnly(true);
    window.setCentralWidget(events);
    window.setWindowTitle(QString("%1 port %2").arg(controller).arg(port));
    window.resize(700, 400);

    QTimer refresh; // later, when the plug-in is through with what it is in the middle of
    refresh.setSingleShot(true);
    TcpChannel channel(controller, port, [events, &refresh](const QString &line) {
        events->appendPlainText(line);
        refresh.start();
    });
    QObject::connect(&refresh, &QTimer::timeout, &window, [&window, &channel] {
        window.statusBar()->showMessage("Active: " + activeDescription(channel));
    });

    QPluginLoader loader(MODULE_PATH);
    auto *const module = qobject_cast<ModuleInterface *>(loader.instance());
    if (!module) {
        qCritical("%s", qPrintable(loader.errorString()));
        return 1;
    }
    BackendVersions versions = knownVersions();
    module->setProperty("CommandManager", QVariant::fromValue<IOManager *>(&channel));
    module->setProperty("BackendVersions", QVariant::fromValue(&versions));
    module->setProperty("ModuleParent", QVariant::fromValue<QWidget *>(&window));
    module->setProperty("ObserverMode", false);

    window.show();
    // In the next event loop, for the backup of the day comes from there as well. If there is no
    // contact that is the loop of a box, within menuEntries().
    QTimer::singleShot(0, &window, [&channel] { channel.deliver("Veltra2", "v4.2.0"); });
    const QList<ModuleMenuEntry *> entries = module->menuEntries();
    for (const ModuleMenuEntry *entry : entries) {
        window.menuBar()->addMenu(entry->menuTitle)->addAction(entry->action);
    }
    refresh.start();

    const int result = QApplication::exec();
    module->release(); // before the window and the channel go away
    return result;
}
