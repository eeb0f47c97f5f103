#pragma once

#include "hostapi/modulemenuentry.h"

#include <QList>
#include <QString>
#include <QVariant>
#include <QtPlugin>

/// What the host drives in every module plug-in.
///
/// Life cycle: load the plug-in, set the properties, ask for the menu entries, run, release,
/// unload. All calls come from the GUI thread. The order of the operations is the binary contract
/// between host and plug-in: never reorder, never insert.
class ModuleInterface
{
public:
    virtual ~ModuleInterface() = default;

    /// Reserved for hosts that want to touch the module's dialog; may do nothing.
    virtual void hook() = 0;

    /// Gives up everything that menuEntries() made visible. Called before the plug-in is unloaded;
    /// calling it again is harmless.
    virtual void release() = 0;

    /// The module's name for the user.
    virtual QString moduleName() = 0;

    /// The module's version, as "v1.2.3".
    virtual QString moduleVersion() = 0;

    /// The actions for the host's menu bar; records and actions stay the module's. To be called
    /// after the properties have been set: they are read at the first call.
    virtual QList<ModuleMenuEntry *> menuEntries() = 0;

    /// Hands one of the host's objects to the module; unknown names are ignored, the last value
    /// wins.
    virtual void setProperty(QString name, QVariant value) = 0;
};

#define ModuleInterface_iid "com.zor.veltra2.gui.Module/0.2.0"
Q_DECLARE_INTERFACE(ModuleInterface, ModuleInterface_iid)
