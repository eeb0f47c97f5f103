#include "module/configurationsmodule.h"

#include "channel/controller.h"
#include "dialogs/changeconfigurationdlg.h"
#include "hostapi/backendversions.h"
#include "hostapi/iomanager.h"
#include "projectversion.h"
#include "widgets/adoption.h"

#include <QAction>
#include <QLoggingCategory>

#include <type_traits>

namespace {

Q_LOGGING_CATEGORY(wiring, "veltra4.configurations")

// Where the host puts the menu and the action; the front end's modules share one numbering.
constexpr int actionPosition = 30;
constexpr int menuPosition = 100;

// What cannot be converted counts as not given: null, or false.
template <typename Type>
Type valueIn(const QVariant &value, const QString &name)
{
    const auto taken = qvariant_cast<Type>(value);
    const bool fits = value.canConvert<Type>();
    if (!fits || (std::is_pointer_v<Type> && !taken)) {
        const char *type = value.isValid() ? value.typeName() : "no value";
        qCWarning(wiring, "property \"%s\" wants %s and got %s", qPrintable(name),
                  QMetaType::typeName(qMetaTypeId<Type>()), fits ? "null" : type);
    }
    return taken;
}

BackendVersions *orNotGiven(BackendVersions *versions)
{
    static BackendVersions notGiven;
    return versions ? versions : &notGiven;
}

} // namespace

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
        m_commandChannel = valueIn<IOManager *>(value, name);
    } else if (name == QLatin1String("ModuleParent")) {
        m_moduleParent = valueIn<QWidget *>(value, name);
    } else if (name == QLatin1String("BackendVersions")) {
        m_backendVersions = valueIn<BackendVersions *>(value, name);
    } else if (name == QLatin1String("ObserverMode")) {
        m_isObserver = valueIn<bool>(value, name);
    } else {
        return;
    }
    m_given.insert(name);
    if (m_nursery || !m_menuEntries.isEmpty()) {
        qCWarning(wiring, "property \"%s\" was set after menuEntries() had read it",
                  qPrintable(name));
    }
}

/// Without them it runs all the same, but hosts wonder why there is no contact.
void ConfigurationsModule::warnOfMissingProperties() const
{
    for (const char *name : {"CommandManager", "BackendVersions", "ModuleParent"}) {
        if (!m_given.contains(QLatin1String(name))) {
            qCWarning(wiring, "property \"%s\" was not set before menuEntries()", name);
        }
    }
}

void ConfigurationsModule::createEntry()
{
    warnOfMissingProperties();
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
    auto *action = new QAction(tr("&Configurations"), this);
    action->setStatusTip(tr("Change active configuration or add new configurations"));
    action->setWhatsThis(tr("Change active configuration or add new configurations"));
    connect(action, &QAction::triggered, dialog, &ChangeConfigurationDlg::update_and_exec);
    m_menuEntry.action = action;
    m_menuEntries.append(&m_menuEntry);
}

/// Null when the host releases the module or destroys its window meanwhile, as it may within a
/// command or while a box says that the controller is silent. Either takes the nursery away, which
/// is the dialog's parent until the dialog is complete.
ChangeConfigurationDlg *ConfigurationsModule::createDialog()
{
    m_nursery = new QWidget(m_moduleParent, Qt::Window); // which splitters do not adopt
    try {
        auto *dialog =
            new ChangeConfigurationDlg(m_commandChannel, orNotGiven(m_backendVersions), m_nursery);
        adopt(dialog, m_moduleParent);
        delete m_nursery;
        return dialog;
    } catch (const OwnerDestroyed &) {
        return nullptr;
    }
}
