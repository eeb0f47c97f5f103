#pragma once

#include "hostapi/moduleinterface.h"

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QWidget>

class ChangeConfigurationDlg;
class IOManager;
struct BackendVersions;

/// What the host loads: hands the host's objects to the list dialog and offers the menu action that
/// opens it.
///
/// A property that was never set or has the wrong type is harmless: commands then fail, versions
/// count as not given. A warning in the category "veltra4.configurations" tells of it, and of one
/// that is set after it was read.
class ConfigurationsModule : public QObject, public ModuleInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.zor.Veltra2.ConfigurationsModule")
    Q_INTERFACES(ModuleInterface)

public:
    void hook() override;
    void release() override;
    QString moduleName() override;
    QString moduleVersion() override;
    /// One action, unless the host only observes. The first call builds the list dialog, which
    /// contacts the controller.
    QList<ModuleMenuEntry *> menuEntries() override;
    /// Known names: "CommandManager", "ModuleParent", "BackendVersions" and "ObserverMode".
    void setProperty(QString name, QVariant value) override;

private:
    void warnOfMissingProperties() const;
    void createEntry();
    ChangeConfigurationDlg *createDialog();

    QPointer<QWidget> m_moduleParent;
    QList<ModuleMenuEntry *> m_menuEntries; ///< empty, or just the one below
    ModuleMenuEntry m_menuEntry; ///< its widget goes when the host destroys the module parent
    QPointer<QWidget> m_nursery; ///< exists while the dialog is being created
    IOManager *m_commandChannel = nullptr;
    BackendVersions *m_backendVersions = nullptr;
    bool m_isObserver = false;
    QSet<QString> m_given; ///< names of the properties that were set
};
