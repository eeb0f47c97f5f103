#pragma once

#include "hostapi/version.h"

#include <QMetaType>
#include <QString>

/// What the host knows about the connected controller.
///
/// Handed to the plug-in under the property name "BackendVersions"; the host owns it, keeps it
/// alive until the plug-in has been released, and may change it when another controller is
/// connected.
struct BackendVersions
{
    Version ptVersion;        ///< the controller's tracking software
    Version interfaceVersion; ///< the controller's command interface; decides which features exist
    Version ctVersion;        ///< the controller's firmware
    QString systemModel;      ///< model designation, for comparison and display
};

Q_DECLARE_METATYPE(BackendVersions *)
