#include "tests/endtoend/frontend.h"

#include "hostapi/moduleinterface.h"

#include <QDialog>

#include <algorithm>

namespace {

QVector<Configuration>::const_iterator find(const ControllerState &state,
                                            const QByteArray &identifier)
{
    return std::find_if(state.configurations.cbegin(), state.configurations.cend(),
                        [&identifier](const Configuration &configuration) {
                            return configuration.identifier == identifier;
                        });
}

} // namespace

TemporaryHome::TemporaryHome()
    : m_previous(qgetenv("HOME"))
{
    qputenv("HOME", m_directory.path().toLocal8Bit());
}

TemporaryHome::~TemporaryHome()
{
    qputenv("HOME", m_previous);
}

QStringList Record::takeMessages()
{
    QStringList messages;
    messages.swap(m_messages);
    return messages;
}

QByteArrayList Record::takeCommands()
{
    QByteArrayList commands;
    commands.swap(m_commands);
    return commands;
}

void Record::exchanged(const Exchange &exchange)
{
    m_formats << LineChannel::nameOf(exchange.operation) + (' ' + exchange.format);
    if (exchange.result == 0) {
        m_commands << exchange.command;
    }
    if (onCommand) {
        onCommand(exchange.command);
    }
    if (onCall) {
        onCall(exchange.format);
    }
}

void Record::timeoutSet(int /*channel*/, int /*milliseconds*/, int /*flag*/)
{
    if (onCall) {
        onCall({});
    }
}

void Record::messagePosted(const QByteArray &category, const QByteArray &source, int level,
                           const QByteArray &text)
{
    m_messages << QStringLiteral("%1 %2 %3 %4")
                      .arg(QString::fromLatin1(category), QString::fromLatin1(source),
                           QString::number(level), QString::fromLatin1(text));
    if (onCall) {
        onCall({});
    }
}

ModuleHost::ModuleHost(MessageChannel &channel, const Version &interfaceVersion)
    : versions{{4, 2, 0}, interfaceVersion, {4, 1, 0}, QStringLiteral("XQU")}
    , window(std::make_unique<QWidget>())
    , m_channel(channel)
    , m_loader(QStringLiteral(VELTRA4_PLUGIN_PATH))
{
    // Stays mapped after unload(), so that a leak checker can tell whose memory is whose.
    m_loader.setLoadHints(QLibrary::PreventUnloadHint);
    m_module = qobject_cast<ModuleInterface *>(m_loader.instance());
    if (!m_module) {
        qFatal("%s", qPrintable(m_loader.errorString()));
    }
    channel.setObserver(&record);
    window->show();
    m_module->setProperty(QStringLiteral("CommandManager"),
                          QVariant::fromValue<IOManager *>(&channel));
    m_module->setProperty(QStringLiteral("ModuleParent"), QVariant::fromValue(window.get()));
    m_module->setProperty(QStringLiteral("BackendVersions"), QVariant::fromValue(&versions));
    m_module->setProperty(QStringLiteral("ObserverMode"), false);
    offerAction();
    tellVersion(HostVersion::withoutAutomaticBackup);
}

ModuleHost::~ModuleHost()
{
    release();
    m_loader.unload();
}

void ModuleHost::useList(const std::function<void(QDialog *)> &action)
{
    driver.expectDialog(QStringLiteral("ConfigurationDialog"), [&action](QDialog *list) {
        action(list);
        list->reject();
    });
    triggerAction();
}

void ModuleHost::triggerAction()
{
    m_action->trigger();
    driver.verify();
}

void ModuleHost::tellVersion(const char *version)
{
    m_channel.deliverMessage(HostVersion::message, "Veltra2", version);
}

void ModuleHost::offerAction()
{
    for (const ModuleMenuEntry *entry : m_module->menuEntries()) {
        m_action = entry->action;
    }
}

void ModuleHost::release()
{
    m_module->release();
}

QString changeEvent()
{
    return QStringLiteral("GlobalEvent ConfigurationModule 1 ActiveConfigurationChanged");
}

QString errorMessage(const QString &text)
{
    return QStringLiteral("standard VELTRA4 1 ") + text;
}

Configuration &configurationIn(ControllerState &state, const QByteArray &identifier)
{
    const auto found = find(state, identifier);
    if (found == state.configurations.cend()) {
        qFatal("there is no configuration %s", identifier.constData());
    }
    return state.configurations[int(found - state.configurations.cbegin())];
}

const Configuration &configurationIn(const ControllerState &state, const QByteArray &identifier)
{
    const auto found = find(state, identifier);
    if (found == state.configurations.cend()) {
        qFatal("there is no configuration %s", identifier.constData());
    }
    return *found;
}

bool hasConfiguration(const ControllerState &state, const QByteArray &identifier)
{
    return find(state, identifier) != state.configurations.cend();
}

void removeConfiguration(ControllerState &state, const QByteArray &identifier)
{
    const Configuration removed = configurationIn(qAsConst(state), identifier);
    state.configurations.removeOne(removed);
}

ControllerState Sample::light()
{
    constexpr int bytesEach = 500;
    ControllerState state = ControllerState::sample();
    for (Configuration &configuration : state.configurations) {
        configuration.data.truncate(bytesEach);
        configuration.password = SaltedHash();
    }
    return state;
}
