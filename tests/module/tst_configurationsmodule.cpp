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
#include <QtTest>

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

    void connectTo(ScriptedChannel *channel, BackendVersions *versions, QWidget *parent) const
    {
        module->setProperty(QStringLiteral("CommandManager"),
                            QVariant::fromValue<IOManager *>(channel));
        module->setProperty(QStringLiteral("ModuleParent"), QVariant::fromValue(parent));
        module->setProperty(QStringLiteral("BackendVersions"), QVariant::fromValue(versions));
        module->setProperty(QStringLiteral("ObserverMode"), false);
    }

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
    BackendVersions versions{{4, 2, 0}, {1, 27, 0}, {4, 1, 0}, QStringLiteral("XQU")};
    QWidget window;
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
    return {QMessageBox::Critical, QStringLiteral("Command Error"),
            QStringLiteral("no contact to Controller")};
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
        nm.start(QStringLiteral("nm"),
                 {QStringLiteral("-D"), QStringLiteral("--defined-only"), pluginPath});
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
        QCOMPARE(map.value(2).toString(), QStringLiteral("com.zor.Veltra2.ConfigurationsModule"));
        QCOMPARE(map.value(3).toString(), QStringLiteral("ConfigurationsModule"));
        QCOMPARE(QPluginLoader(pluginPath).metaData().value(QStringLiteral("IID")).toString(),
                 QStringLiteral("com.zor.Veltra2.ConfigurationsModule"));
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
        QFile mapped(QStringLiteral("/proc/self/maps"));
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
        QCOMPARE(plugin.module->moduleName(), QStringLiteral("GUI Settings Configuration"));
        QCOMPARE(plugin.module->moduleVersion(), QStringLiteral("v1.10.1"));
    }

    void hookDoesNothing()
    {
        Controller controller;
        const Plugin plugin;
        plugin.module->hook();
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        plugin.module->menuEntries();
        controller.channel.takeTrace();
        plugin.module->hook();
        QCOMPARE(controller.channel.trace(), QStringList());
    }

    // The menu entry
    void offersOneActionInTheMenu()
    {
        Controller controller;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        const QList<ModuleMenuEntry *> entries = plugin.module->menuEntries();
        QCOMPARE(entries.size(), 1);
        const ModuleMenuEntry *entry = entries.first();
        QCOMPARE(entry->menuTitle, QStringLiteral("&VELTRA4"));
        QCOMPARE(entry->menuPosition, 100);
        QCOMPARE(entry->actionPosition, 30);
        QCOMPARE(entry->reserved, 0);
        QCOMPARE(entry->action->text(), QStringLiteral("&Configurations"));
        QCOMPARE(entry->action->statusTip(),
                 QStringLiteral("Change active configuration or add new configurations"));
        QCOMPARE(entry->action->whatsThis(),
                 QStringLiteral("Change active configuration or add new configurations"));
        QCOMPARE(entry->action->parent(), plugin.object);
        QCOMPARE(entry->widget->objectName(), QStringLiteral("ConfigurationDialog"));
        QCOMPARE(entry->widget->parentWidget(), &controller.window);
        QVERIFY(!entry->widget->isVisible());
    }

    void theDialogIsBuiltOnce()
    {
        Controller controller;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        const QList<ModuleMenuEntry *> first = plugin.module->menuEntries();
        QCOMPARE(controller.channel.takeTrace(),
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
        QCOMPARE(plugin.module->menuEntries(), first);
        QCOMPARE(first.first()->widget, dialog);
        QCOMPARE(controller.channel.trace(), QStringList());
    }

    void theActionShowsTheDialog()
    {
        Controller controller;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        const ModuleMenuEntry *entry = plugin.module->menuEntries().first();
        ModalDriver driver;
        for (int i = 0; i < 2; ++i) {
            driver.expectDialog(QStringLiteral("ConfigurationDialog"), [entry](QDialog *dialog) {
                QCOMPARE(dialog, entry->widget);
                QCOMPARE(
                    dialog->findChild<QTableWidget *>(QStringLiteral("tableWidget"))->rowCount(),
                    2);
                dialog->reject();
            });
            entry->action->trigger();
        }
    }

    void anObserverSeesNothing()
    {
        Controller controller;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        plugin.module->setProperty(QStringLiteral("ObserverMode"),
                                   QStringLiteral("true")); // is converted
        QVERIFY(plugin.module->menuEntries().isEmpty());
        QVERIFY(plugin.module->menuEntries().isEmpty());
        QCOMPARE(controller.channel.trace(), QStringList());
        plugin.module->setProperty(QStringLiteral("ObserverMode"),
                                   QVariant()); // cannot be converted
        QCOMPARE(plugin.module->menuEntries().size(), 1);
    }

    void releaseDeletesTheDialogAndEmptiesTheList()
    {
        Controller controller;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        const ModuleMenuEntry *entry = plugin.module->menuEntries().first();
        const QPointer<QWidget> dialog(entry->widget);
        const QPointer<QAction> action(entry->action);
        controller.channel.takeTrace();
        plugin.module->release();
        QVERIFY(dialog.isNull());
        QVERIFY(!action.isNull()); // the menu may still hold it
        QVERIFY(!entry->widget);
        QCOMPARE(controller.channel.trace(), QStringList{"removeMessageReceiver ServiceModule"});
        action->trigger();
        QVERIFY(!QApplication::activeModalWidget());
    }

    void releaseMayBeRepeated()
    {
        Controller controller;
        const Plugin plugin;
        plugin.module->release();
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        plugin.module->menuEntries();
        plugin.module->release();
        plugin.module->release();
        QCOMPARE(
            controller.channel.trace().count(QStringLiteral("removeMessageReceiver ServiceModule")),
            1);
    }

    void afterReleaseANewDialogCanBeBuilt()
    {
        Controller controller;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        const QPointer<QAction> oldAction(plugin.module->menuEntries().first()->action);
        plugin.module->release();
        const QList<ModuleMenuEntry *> entries = plugin.module->menuEntries();
        QCOMPARE(entries.size(), 1);
        QVERIFY(entries.first()->widget);
        QVERIFY(entries.first()->action != oldAction);
        QCOMPARE(oldAction->parent(), plugin.object);
    }

    // Properties
    void lastPropertyWins()
    {
        Controller first;
        Controller second;
        const Plugin plugin;
        plugin.connectTo(&first.channel, &first.versions, &first.window);
        plugin.connectTo(&second.channel, &second.versions, &second.window);
        QCOMPARE(plugin.module->menuEntries().first()->widget->parentWidget(), &second.window);
        QCOMPARE(first.channel.trace(), QStringList());
        QVERIFY(!second.channel.trace().isEmpty());
    }

    void unknownPropertiesAreIgnored()
    {
        Controller controller;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        plugin.module->setProperty(QStringLiteral("commandmanager"), QVariant());
        plugin.module->setProperty(QStringLiteral("Observer"), true);
        plugin.module->setProperty(QString(), 5);
        QCOMPARE(plugin.module->menuEntries().first()->widget->parentWidget(), &controller.window);
        QVERIFY(!controller.channel.trace().isEmpty());
    }

    void exitHasTheFocusFromTheStart()
    {
        Controller controller;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        const QWidget *dialog = plugin.module->menuEntries().first()->widget;
        QVERIFY(dialog->focusWidget());
        QCOMPARE(dialog->focusWidget()->objectName(), QStringLiteral("pushButton_exit"));
    }

    void aParentThatIsNoWidgetIsNoParent()
    {
        Controller controller;
        QObject noWidget;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        plugin.module->setProperty(QStringLiteral("ModuleParent"), QVariant::fromValue(&noWidget));
        QVERIFY(!plugin.module->menuEntries().first()->widget->parentWidget());
    }

    void aParentGivenAsObjectIsTaken()
    {
        Controller controller;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, nullptr);
        plugin.module->setProperty(QStringLiteral("ModuleParent"),
                                   QVariant::fromValue(static_cast<QObject *>(&controller.window)));
        QCOMPARE(plugin.module->menuEntries().first()->widget->parentWidget(), &controller.window);
    }

    // It would make a pane of each widget that it is given as a child.
    void aSplitterKeepsItsPanes()
    {
        Controller controller;
        QSplitter splitter;
        splitter.addWidget(new QWidget);
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &splitter);
        int panes = 0;
        controller.channel.whenSent("config number_of_configs", [&] { panes = splitter.count(); });
        plugin.module->menuEntries();
        QCOMPARE(panes, 1);
        QCOMPARE(splitter.count(), 1);
    }

    void withoutPropertiesEveryCommandFails()
    {
        const Plugin plugin;
        ModalDriver driver;
        driver.expectBox(noContactBox());
        const ModuleMenuEntry *entry = plugin.module->menuEntries().first();
        driver.verify();
        driver.expectBox(noContactBox());
        entry->action->trigger();
        driver.verify();
        // Nothing is given, so nothing that came with a later version is offered.
        QCOMPARE(
            entry->widget->findChild<QTableWidget *>(QStringLiteral("tableWidget"))->columnCount(),
            3);
    }

    void propertiesOfTheWrongTypeAreAsGoodAsNone()
    {
        Controller controller;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        for (const char *name : {"CommandManager", "BackendVersions", "ModuleParent"}) {
            plugin.module->setProperty(QString::fromLatin1(name), QStringLiteral("no pointer"));
        }
        ModalDriver driver;
        driver.expectBox(noContactBox());
        QVERIFY(!plugin.module->menuEntries().first()->widget->parentWidget());
        QCOMPARE(controller.channel.trace(), QStringList());
    }

    void rightWiringIsNoMatterForAWarning()
    {
        Controller controller;
        const WiringWarnings warnings;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        plugin.module->setProperty(QStringLiteral("unknown"), QVariant());
        plugin.module->menuEntries();
        plugin.module->release();
        plugin.module->setProperty(QStringLiteral("ObserverMode"), 1); // is read by the next call
        plugin.module->menuEntries();
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
            << "BackendVersions" << QVariant(QStringLiteral("4.2.0"))
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
        Controller controller;
        const WiringWarnings warnings;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        plugin.module->setProperty(name, value);
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
        plugin.module->setProperty(QStringLiteral("ObserverMode"), true);
        plugin.module->menuEntries();
        QCOMPARE(warnings.texts(), QStringList());
    }

    void aPropertyThatComesTooLateIsWarnedOf()
    {
        Controller first;
        Controller second;
        const WiringWarnings warnings;
        const Plugin plugin;
        plugin.connectTo(&first.channel, &first.versions, &first.window);
        plugin.module->menuEntries();
        plugin.module->setProperty(QStringLiteral("BackendVersions"),
                                   QVariant::fromValue(&second.versions));
        QCOMPARE(
            warnings.texts(),
            QStringList("property \"BackendVersions\" was set after menuEntries() had read it"));
    }

    // The host pulls the rug
    void theParentMayDieBeforeRelease()
    {
        Controller controller;
        auto parent = std::make_unique<QWidget>();
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, parent.get());
        const ModuleMenuEntry *entry = plugin.module->menuEntries().first();
        parent.reset();
        QVERIFY(!entry->widget);
        entry->action->trigger();
        QCOMPARE(plugin.module->menuEntries().size(), 1);
        plugin.module->release();
        QVERIFY(controller.channel.receivers().isEmpty());
    }

    void theParentMayDieBeforeTheFirstEntries()
    {
        Controller controller;
        auto parent = std::make_unique<QWidget>();
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, parent.get());
        parent.reset();
        QVERIFY(!plugin.module->menuEntries().first()->widget->parentWidget());
    }

    void theParentMayDieUnderTheFirstBox()
    {
        Controller controller;
        controller.channel.fail("config number_of_configs");
        auto parent = std::make_unique<QWidget>();
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, parent.get());
        ModalDriver driver;
        driver.expectDialog(QString(), [&parent](QDialog *) { parent.reset(); });
        QVERIFY(plugin.module->menuEntries().isEmpty());
    }

    void theModuleMayBeReleasedUnderTheFirstBox()
    {
        Controller controller;
        controller.channel.fail("config number_of_configs");
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        ModalDriver driver;
        driver.expectDialog(QString(), [&plugin](QDialog *) {
            QVERIFY(plugin.module->menuEntries().isEmpty()); // asked again meanwhile
            plugin.module->release();
        });
        QVERIFY(plugin.module->menuEntries().isEmpty());
    }

    void theModuleMayBeReleasedWhileTheDialogIsShown()
    {
        Controller controller;
        const Plugin plugin;
        plugin.connectTo(&controller.channel, &controller.versions, &controller.window);
        const QPointer<QAction> action(plugin.module->menuEntries().first()->action);
        ModalDriver driver;
        driver.expectDialog(QStringLiteral("ConfigurationDialog"),
                            [&plugin](QDialog *) { plugin.module->release(); });
        action->trigger();
        QVERIFY(controller.channel.receivers().isEmpty());
    }
};

VELTRA4_TEST(TestConfigurationsModule)
#include "tst_configurationsmodule.moc"
