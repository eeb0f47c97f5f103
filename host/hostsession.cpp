#include "host/hostsession.h"

#include "host/controlleridentity.h"
#include "host/controllerlink.h"
#include "host/hostoptions.h"
#include "host/identitypanel.h"
#include "host/modulemenus.h"
#include "host/transferstatus.h"
#include "hostapi/moduleinterface.h"
#include "simulator/linechannel.h"

#include <QMenuBar>

namespace {

constexpr int hostVersionMessage = 1;

BackendVersions versionsFrom(const HostOptions &options)
{
    return {options.ptVersion, options.interfaceVersion, options.ctVersion, options.systemModel};
}

} // namespace

HostSession::HostSession(ControllerLink &link, const HostOptions &options)
    : m_link(link)
    , m_isObserver(options.isObserver)
    , m_hostVersion(options.hostVersion)
    , m_versions(versionsFrom(options))
    , m_plugin(options.pluginFile)
    , m_logs(m_monitor)
    , m_window(m_logs.events(), m_logs.commands())
{
    connect(&m_monitor, &ChannelMonitor::commandSent, m_window.transferStatus(),
            &TransferStatus::follow);
    connect(&m_monitor, &ChannelMonitor::eventPosted, this, &HostSession::noticeEvent);
    m_link.moduleChannel().setObserver(&m_monitor);

    // Asked for later, not while the module that announced the change is in the middle of its work.
    m_identityTimer.setSingleShot(true);
    connect(&m_identityTimer, &QTimer::timeout, this, &HostSession::showIdentity);
    m_window.identityPanel()->showConnection(link.description());
    m_link.setContactCallback([this] { followContact(); });
}

HostSession::~HostSession()
{
    m_plugin.release();
    m_link.setContactCallback({});
    m_link.moduleChannel().setObserver(nullptr);
}

bool HostSession::load(QString *problem)
{
    const bool isLoaded = m_plugin.load() == PluginLoader::Result::Loaded;
    if (!isLoaded) {
        *problem = m_plugin.errorText();
    }
    return isLoaded;
}

void HostSession::start()
{
    showIdentity();
    setProperties();
    placeMenuEntries();
    m_link.deliverMessage(hostVersionMessage, QStringLiteral("Veltra2"), m_hostVersion);
}

void HostSession::setProperties()
{
    ModuleInterface *module = m_plugin.module();
    module->setProperty(QStringLiteral("CommandManager"),
                        QVariant::fromValue<IOManager *>(&m_link.moduleChannel()));
    module->setProperty(QStringLiteral("ModuleParent"), QVariant::fromValue<QWidget *>(&m_window));
    module->setProperty(QStringLiteral("BackendVersions"), QVariant::fromValue(&m_versions));
    module->setProperty(QStringLiteral("ObserverMode"), m_isObserver);
}

void HostSession::placeMenuEntries()
{
    const QList<ModuleMenuEntry *> entries = m_plugin.module()->menuEntries();
    for (const ModuleMenuEntry *entry : entries) {
        ModuleMenus::place(m_window.menuBar(), *entry);
    }
}

void HostSession::noticeEvent(const QByteArray &category, const QByteArray & /*source*/,
                              int /*level*/, const QByteArray &text)
{
    if (category == "GlobalEvent" && text == "ActiveConfigurationChanged") {
        m_identityTimer.start();
    }
}

void HostSession::followContact()
{
    m_window.identityPanel()->showConnection(m_link.description());
    if (m_link.hasContact()) {
        m_identityTimer.start();
    }
}

void HostSession::showIdentity()
{
    const ControllerIdentity identity = readControllerIdentity(m_link.hostChannel());
    if (m_versions.systemModel.isEmpty()) { // nobody has told another one
        m_versions.systemModel = identity.model;
    }
    m_window.identityPanel()->showIdentity(identity);
    if (identity.isKnown()) {
        m_window.identityPanel()->showVersions(m_versions);
    }
    emit identityShown();
}
