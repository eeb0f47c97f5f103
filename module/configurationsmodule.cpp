#include "module/configurationsmodule.h"

#include "channel/controller.h"
#include "dialogs/changeconfigurationdlg.h"
#include "hostapi/backendversions.h"
#include "hostapi/iomanager.h"
#include "projectversion.h"

#include <QAction>

namespace {

// Where the host puts the menu and the action; the front end's modules share one numbering.
constexpr int actionPosition = 30;
constexpr int menuPosition = 100;

BackendVersions *orNotGiven(BackendVersions *versions)
{
    static BackendVersions notGiven;
    return versions ? versions : &notGiven;
}

} // namespace

ConfigurationsModule::ConfigurationsModule() = default;

// The dialog stays: it belongs to the host's window, and hosts call release() first.
ConfigurationsModule::~ConfigurationsModule() = default;

void ConfigurationsModule::hook()
{
    // The list dialog needs no preparation.
}

void ConfigurationsModule::release()
{
    delete m_nursery;
    delete m_menuEntry.widget;
    m_menuEntries.clear();
}

QString ConfigurationsModule::moduleName()
{
    return tr("GUI Settings Configuration");
}

QString ConfigurationsModule::moduleVersion()
{
    return QStringLiteral("v%1.%2.%3")
        .arg(VELTRA4_VERSION_MAJOR)
        .arg(VELTRA4_VERSION_MINOR)
        .arg(VELTRA4_VERSION_PATCH);
}

QList<ModuleMenuEntry *> ConfigurationsModule::menuEntries()
{
    // While the dialog is being created, a box may be open and the host may ask again.
    if (m_menuEntries.isEmpty() && !m_isObserver && !m_nursery) {
        createEntry();
    }
    return m_menuEntries;
}

void ConfigurationsModule::setProperty(QString name, QVariant value)
{
    if (name == QLatin1String("CommandManager")) {
        m_commandChannel = qvariant_cast<IOManager *>(value);
    } else if (name == QLatin1String("ModuleParent")) {
        m_moduleParent = qvariant_cast<QWidget *>(value);
    } else if (name == QLatin1String("BackendVersions")) {
        m_backendVersions = qvariant_cast<BackendVersions *>(value);
    } else if (name == QLatin1String("ObserverMode")) {
        m_isObserver = qvariant_cast<bool>(value);
    }
}

void ConfigurationsModule::createEntry()
{
    ChangeConfigurationDlg *const dialog = createDialog();
    if (!dialog) {
        return;
    }
    m_menuEntry.widget = dialog;
    connect(dialog, &QObject::destroyed, this, [this] { m_menuEntry.widget = nullptr; });
    m_menuEntry.menuTitle = tr("&VELTRA4");
    m_menuEntry.menuPosition = menuPosition;
    m_menuEntry.actionPosition = actionPosition;
    m_menuEntry.reserved = 0;
    m_menuEntry.action = createAction(dialog);
    m_menuEntries.append(&m_menuEntry);
}

/// Null when the host releases the module or destroys its window meanwhile, as it may within a
/// command or while a box says that the controller is silent. Either takes the nursery away, which
/// is the dialog's parent until the dialog is complete.
ChangeConfigurationDlg *ConfigurationsModule::createDialog()
{
    m_nursery = new QWidget(m_moduleParent);
    try {
        auto *dialog =
            new ChangeConfigurationDlg(m_commandChannel, orNotGiven(m_backendVersions), m_nursery);
        dialog->setParent(m_moduleParent, dialog->windowFlags());
        delete m_nursery;
        return dialog;
    } catch (const OwnerDestroyed &) {
        return nullptr;
    }
}

QAction *ConfigurationsModule::createAction(ChangeConfigurationDlg *dialog)
{
    auto *action = new QAction(tr("&Configurations"), this);
    action->setStatusTip(tr("Change active configuration or add new configurations"));
    action->setWhatsThis(tr("Change active configuration or add new configurations"));
    connect(action, &QAction::triggered, dialog, &ChangeConfigurationDlg::update_and_exec);
    return action;
}
