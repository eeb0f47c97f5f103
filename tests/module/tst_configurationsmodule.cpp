#include "hostapi/backendversions.h"
#include "hostapi/moduleinterface.h"
#include "simulator/messagechannel.h"
#include "tests/support/modaldriver.h"
#include "tests/support/scriptedchannel.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QCborMap>
#include <QJsonObject>
#include <QPluginLoader>
#include <QProcess>
#include <QSplitter>
#include <QTableWidget>
#include <QTest>

namespace {

const QString pluginPath = QStringLiteral(VELTRA4_PLUGIN_PATH);

// The plug-in as a host sees it: loaded from disk, and unloaded when the test ends.
struct Plugin
{
    Plugin()
        : loader(pluginPath)
        , object(loader.instance())
        , module(qobject_cast<ModuleInterface *>(object))
    {
    }
    ~Plugin()
    {
        if (module) {
            module->release();
        }
        loader.unload();
    }

    void set(const QString &name, const QVariant &value) const { module->setProperty(name, value); }
    ModuleMenuEntry *entry() const { return module->menuEntries().first(); }

    QPluginLoader loader;
    QObject *object;
    ModuleInterface *module;
};

struct Controller
{
    Controller()
    {
        channel.answerConfigurations({"standard", "alpha"}, "alpha");
        channel.answer("config free_space", "0.5");
    }

    ScriptedChannel channel;
    BackendVersions versions{{4, 2, 0}, {1, 27, 0}, {4, 1, 0}, "XQU"};
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
};

// A host that has given the plug-in all that it wants.
struct Host : Controller, Plugin
{
    Host() { give(*this); }

    void give(Controller &controller) const
    {
        set("CommandManager", QVariant::fromValue<IOManager *>(&controller.channel));
        set("ModuleParent", QVariant::fromValue(controller.window.get()));
        set("BackendVersions", QVariant::fromValue(&controller.versions));
        set("ObserverMode", false);
    }
};

// A host's channel often is an object, too; fromValue() takes it for that alone.
class ChannelThatIsAnObject final : public QObject, public MessageChannel
{
    Q_OBJECT

    int setTimeout(int, int, int) override { return 0; }
    int transact(Operation, const QByteArray &, QByteArray *) override { return 1; }
};

// What the plug-in warns of, as long as this lives.
class WiringWarnings
{
public:
    WiringWarnings() { s_previous = qInstallMessageHandler(take); }
    ~WiringWarnings()
    {
        qInstallMessageHandler(s_previous);
        s_texts.clear();
    }
    Q_DISABLE_COPY_MOVE(WiringWarnings)

    QStringList texts() const { return s_texts; }

private:
    static void take(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (qstrcmp(context.category, "veltra4.configurations") == 0 && type == QtWarningMsg) {
            s_texts << text;
        } else {
            s_previous(type, context, text);
        }
    }

    inline static QtMessageHandler s_previous = nullptr;
    inline static QStringList s_texts;
};

ExpectedBox noContactBox()
{
    return {QMessageBox::Critical, "Command Error", "no contact to Controller"};
}

} // namespace

class TestConfigurationsModule : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(QFile::exists(pluginPath), qPrintable(pluginPath)); }

    // The file
    void exportsJustTheEntryPointsOfAPlugin()
    {
        QProcess nm;
        nm.start("nm", {"-D", "--defined-only", pluginPath});
        QVERIFY(nm.waitForFinished());
        QCOMPARE(nm.exitCode(), 0);
        QStringList symbols;
        for (const QByteArray &line : nm.readAllStandardOutput().trimmed().split('\n')) {
            symbols << QString::fromLatin1(line.split(' ').constLast());
        }
        symbols.sort();
        QCOMPARE(symbols, QStringList({"qt_plugin_instance", "qt_plugin_query_metadata"}));
    }

    void carriesTheMetadataOfAReleaseBuild()
    {
        QFile file(pluginPath);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray content = file.readAll();
        const QByteArray magic = "QTMETADATA !";
        const int start = content.indexOf(magic + QByteArray("\0\5\17", 3));
        QVERIFY(start >= 0);
        QCOMPARE(content.count(magic), 1);
        const int flags = static_cast<unsigned char>(content.at(start + magic.size() + 3));
#ifdef QT_NO_DEBUG
        QCOMPARE(flags, 0);
#else
        QCOMPARE(flags, 1);
#endif
        const QCborMap map =
            QCborValue::fromCbor(content.mid(start + magic.size() + 4, 4096)).toMap();
        QCOMPARE(map.size(), 2);
        QCOMPARE(map.value(2).toString(), "com.zor.Veltra2.ConfigurationsModule");
        QCOMPARE(map.value(3).toString(), "ConfigurationsModule");
        QCOMPARE(QPluginLoader(pluginPath).metaData().value("IID").toString(),
                 "com.zor.Veltra2.ConfigurationsModule");
    }

    void isOneInstance()
    {
        const Plugin plugin;
        QVERIFY2(plugin.object, qPrintable(plugin.loader.errorString()));
        QCOMPARE(QPluginLoader(pluginPath).instance(), plugin.object);
        QVERIFY(!plugin.object->parent());
    }

    void staysInMemoryWhenItIsUnloaded()
    {
        QPluginLoader loader(pluginPath);
        const QPointer<QObject> module(loader.instance());
        QVERIFY(module);
        QVERIFY(loader.unload());
        QVERIFY(module.isNull());
        QFile mapped("/proc/self/maps");
        QVERIFY(mapped.open(QIODevice::ReadOnly));
        QVERIFY(mapped.readAll().contains("ConfigurationsModule.so"));
    }

    void answersToItsInterfaces()
    {
        const Plugin plugin;
        QVERIFY(plugin.module);
        QCOMPARE(plugin.object->metaObject()->className(), "ConfigurationsModule");
        QCOMPARE(plugin.object->qt_metacast("ConfigurationsModule"),
                 static_cast<void *>(plugin.object));
        QCOMPARE(plugin.object->qt_metacast("ModuleInterface"), static_cast<void *>(plugin.module));
        QCOMPARE(plugin.object->qt_metacast("com.zor.veltra2.gui.Module/0.2.0"),
                 static_cast<void *>(plugin.module));
        QCOMPARE(plugin.object->qt_metacast("QObject"), static_cast<void *>(plugin.object));
        QVERIFY(!plugin.object->qt_metacast("com.zor.veltra2.gui.Module/0.1.0"));
    }

    void tellsItsNameAndVersion()
    {
        const Plugin plugin;
        QCOMPARE(plugin.module->moduleName(), "GUI Settings Configuration");
        QCOMPARE(plugin.module->moduleVersion(), "v1.10.1");
    }

    void hookDoesNothing()
    {
        Host host;
        host.module->hook();
        host.module->menuEntries();
        host.channel.takeTrace();
        host.module->hook();
        QCOMPARE(host.channel.trace(), QStringList());
    }

    // The menu entry
    void offersOneActionInTheMenu()
    {
        Host host;
        const QList<ModuleMenuEntry *> entries = host.module->menuEntries();
        QCOMPARE(entries.size(), 1);
        const ModuleMenuEntry *entry = entries.first();
        QCOMPARE(entry->menuTitle, "&VELTRA4");
        QCOMPARE(entry->menuPosition, 100);
        QCOMPARE(entry->actionPosition, 30);
        QCOMPARE(entry->reserved, 0);
        QCOMPARE(entry->action->text(), "&Configurations");
        QCOMPARE(entry->action->statusTip(),
                 "Change active configuration or add new configurations");
        QCOMPARE(entry->action->whatsThis(),
                 "Change active configuration or add new configurations");
        QCOMPARE(entry->action->parent(), host.object);
        QCOMPARE(entry->widget->objectName(), "ConfigurationDialog");
        QCOMPARE(entry->widget->parentWidget(), host.window.get());
        QVERIFY(!entry->widget->isVisible());
    }

    void theDialogIsBuiltOnce()
    {
        Host host;
        const QList<ModuleMenuEntry *> first = host.module->menuEntries();
        QCOMPARE(host.channel.takeTrace(),
                 QStringList({"addMessageReceiver ConfigurationsModule",
                              "queryDouble config free_space", "queryInt config number_of_configs",
                              "queryString config active_config", "queryString config config t01",
                              "queryString config owner_of_config standard",
                              "queryString config desc_of_config standard",
                              "queryString config config_has_password standard",
                              "queryString config config t02",
                              "queryString config owner_of_config alpha",
                              "queryString config desc_of_config alpha",
                              "queryString config config_has_password alpha"}));
        const QWidget *dialog = first.first()->widget;
        QCOMPARE(host.module->menuEntries(), first);
        QCOMPARE(first.first()->widget, dialog);
        QCOMPARE(host.channel.trace(), QStringList());
    }

    void theActionShowsTheDialog()
    {
        Host host;
        const ModuleMenuEntry *entry = host.entry();
        ModalDriver driver;
        for (int i = 0; i < 2; ++i) {
            driver.expectDialog("ConfigurationDialog", [entry](QDialog *dialog) {
                QCOMPARE(dialog, entry->widget);
                QCOMPARE(dialog->findChild<QTableWidget *>("tableWidget")->rowCount(), 2);
                dialog->reject();
            });
            entry->action->trigger();
        }
    }

    void anObserverSeesNothing()
    {
        Host host;
        host.set("ObserverMode", "true"); // is converted
        QVERIFY(host.module->menuEntries().isEmpty());
        QVERIFY(host.module->menuEntries().isEmpty());
        QCOMPARE(host.channel.trace(), QStringList());
        host.set("ObserverMode", QVariant()); // cannot be converted
        QCOMPARE(host.module->menuEntries().size(), 1);
    }

    void releaseDeletesTheDialogAndEmptiesTheList()
    {
        Host host;
        const ModuleMenuEntry *entry = host.entry();
        const QPointer<QWidget> dialog(entry->widget);
        const QPointer<QAction> action(entry->action);
        host.channel.takeTrace();
        host.module->release();
        QVERIFY(dialog.isNull());
        QVERIFY(!action.isNull()); // the menu may still hold it
        QVERIFY(!entry->widget);
        QCOMPARE(host.channel.trace(), QStringList{"removeMessageReceiver ServiceModule"});
        action->trigger();
        QVERIFY(!QApplication::activeModalWidget());
    }

    void releaseMayBeRepeated()
    {
        Host host;
        host.module->release();
        host.module->menuEntries();
        host.module->release();
        host.module->release();
        QCOMPARE(host.channel.trace().count("removeMessageReceiver ServiceModule"), 1);
    }

    void afterReleaseANewDialogCanBeBuilt()
    {
        Host host;
        const QPointer<QAction> oldAction(host.entry()->action);
        host.module->release();
        const QList<ModuleMenuEntry *> entries = host.module->menuEntries();
        QCOMPARE(entries.size(), 1);
        QVERIFY(entries.first()->widget);
        QVERIFY(entries.first()->action != oldAction);
        QCOMPARE(oldAction->parent(), host.object);
    }

    // Properties
    void lastPropertyWins()
    {
        Controller second;
        Host host;
        host.give(second);
        QCOMPARE(host.entry()->widget->parentWidget(), second.window.get());
        QCOMPARE(host.channel.trace(), QStringList());
        QVERIFY(!second.channel.trace().isEmpty());
    }

    void unknownPropertiesAreIgnored()
    {
        Host host;
        host.set("commandmanager", QVariant());
        host.set("Observer", true);
        host.set(QString(), 5);
        QCOMPARE(host.entry()->widget->parentWidget(), host.window.get());
        QVERIFY(!host.channel.trace().isEmpty());
    }

    void exitHasTheFocusFromTheStart()
    {
        Host host;
        const QWidget *dialog = host.entry()->widget;
        QVERIFY(dialog->focusWidget());
        QCOMPARE(dialog->focusWidget()->objectName(), "pushButton_exit");
    }

    void aParentThatIsNoWidgetIsNoParent()
    {
        QObject noWidget;
        Host host;
        host.set("ModuleParent", QVariant::fromValue(&noWidget));
        QVERIFY(!host.entry()->widget->parentWidget());
    }

    void aParentGivenAsObjectIsTaken()
    {
        QWidget another;
        Host host;
        host.set("ModuleParent", QVariant::fromValue<QObject *>(&another));
        QCOMPARE(host.entry()->widget->parentWidget(), &another);
    }

    // It would make a pane of each widget that it is given as a child.
    void aSplitterKeepsItsPanes()
    {
        QSplitter splitter;
        splitter.addWidget(new QWidget);
        Host host;
        host.set("ModuleParent", QVariant::fromValue<QWidget *>(&splitter));
        int panes = 0;
        host.channel.whenSent("config number_of_configs", [&] { panes = splitter.count(); });
        host.module->menuEntries();
        QCOMPARE(panes, 1);
        QCOMPARE(splitter.count(), 1);
    }

    void withoutPropertiesEveryCommandFails()
    {
        const Plugin plugin;
        ModalDriver driver;
        driver.expectBox(noContactBox());
        const ModuleMenuEntry *entry = plugin.entry();
        driver.verify();
        driver.expectBox(noContactBox());
        entry->action->trigger();
        driver.verify();
        // Nothing is given, so nothing that came with a later version is offered.
        QCOMPARE(entry->widget->findChild<QTableWidget *>("tableWidget")->columnCount(), 3);
    }

    void propertiesOfTheWrongTypeAreAsGoodAsNone()
    {
        Host host;
        for (const char *name : {"CommandManager", "BackendVersions", "ModuleParent"}) {
            host.set(QString::fromLatin1(name), "no pointer");
        }
        ModalDriver driver;
        driver.expectBox(noContactBox());
        QVERIFY(!host.entry()->widget->parentWidget());
        QCOMPARE(host.channel.trace(), QStringList());
    }

    void rightWiringIsNoMatterForAWarning()
    {
        const WiringWarnings warnings;
        Host host;
        host.set("unknown", QVariant());
        host.module->menuEntries();
        host.module->release();
        host.set("ObserverMode", 1); // is read by the next call
        host.module->menuEntries();
        QCOMPARE(warnings.texts(), QStringList());
    }

    void wrongWiringIsWarnedOf_data()
    {
        static ChannelThatIsAnObject channel;
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("warning");

        QTest::newRow("a channel as what it is besides")
            << "CommandManager" << QVariant::fromValue(&channel)
            << "property \"CommandManager\" wants IOManager* and got ChannelThatIsAnObject*";
        QTest::newRow("no channel") << "CommandManager" << QVariant::fromValue<IOManager *>(nullptr)
                                    << "property \"CommandManager\" wants IOManager* and got null";
        QTest::newRow("versions as a text")
            << "BackendVersions" << QVariant("4.2.0")
            << "property \"BackendVersions\" wants BackendVersions* and got QString";
        QTest::newRow("a parent that is no widget")
            << "ModuleParent" << QVariant::fromValue<QObject *>(&channel)
            << "property \"ModuleParent\" wants QWidget* and got QObject*";
        QTest::newRow("no value") << "ObserverMode" << QVariant()
                                  << "property \"ObserverMode\" wants bool and got no value";
    }

    void wrongWiringIsWarnedOf()
    {
        QFETCH(QString, name);
        QFETCH(QVariant, value);
        QFETCH(QString, warning);
        const WiringWarnings warnings;
        Host host;
        host.set(name, value);
        QCOMPARE(warnings.texts(), QStringList(warning));
    }

    void missingPropertiesAreWarnedOf()
    {
        const WiringWarnings warnings;
        const Plugin plugin;
        ModalDriver driver;
        driver.expectBox(noContactBox());
        plugin.module->menuEntries();
        plugin.module->menuEntries();
        QCOMPARE(warnings.texts(),
                 QStringList({"property \"CommandManager\" was not set before menuEntries()",
                              "property \"BackendVersions\" was not set before menuEntries()",
                              "property \"ModuleParent\" was not set before menuEntries()"}));
    }

    void anObserverMissesNothing()
    {
        const WiringWarnings warnings;
        const Plugin plugin;
        plugin.set("ObserverMode", true);
        plugin.module->menuEntries();
        QCOMPARE(warnings.texts(), QStringList());
    }

    void aPropertyThatComesTooLateIsWarnedOf()
    {
        const WiringWarnings warnings;
        Host host;
        host.module->menuEntries();
        host.set("BackendVersions", QVariant::fromValue(&host.versions));
        QCOMPARE(
            warnings.texts(),
            QStringList("property \"BackendVersions\" was set after menuEntries() had read it"));
    }

    // The host pulls the rug
    void theParentMayDieBeforeRelease()
    {
        Host host;
        const ModuleMenuEntry *entry = host.entry();
        host.window.reset();
        QVERIFY(!entry->widget);
        entry->action->trigger();
        QCOMPARE(host.module->menuEntries().size(), 1);
        host.module->release();
        QVERIFY(host.channel.receivers().isEmpty());
    }

    void theParentMayDieBeforeTheFirstEntries()
    {
        Host host;
        host.window.reset();
        QVERIFY(!host.entry()->widget->parentWidget());
    }

    void theParentMayDieUnderTheFirstBox()
    {
        Host host;
        host.channel.fail("config number_of_configs");
        ModalDriver driver;
        driver.expectDialog(QString(), [&host](QDialog *) { host.window.reset(); });
        QVERIFY(host.module->menuEntries().isEmpty());
    }

    void theModuleMayBeReleasedUnderTheFirstBox()
    {
        Host host;
        host.channel.fail("config number_of_configs");
        ModalDriver driver;
        driver.expectDialog(QString(), [&host](QDialog *) {
            QVERIFY(host.module->menuEntries().isEmpty()); // asked again meanwhile
            host.module->release();
        });
        QVERIFY(host.module->menuEntries().isEmpty());
    }
};

VELTRA4_TEST(TestConfigurationsModule)
#include "tst_configurationsmodule.moc"
