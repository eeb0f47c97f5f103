#pragma once

#include "hostapi/backendversions.h"
#include "simulator/controllerstate.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

class Rehearsal;

/// What a backup document carries of a controller.
struct BackupContents
{
    QString name;
    QString serial;
    QStringList slaves;
    QString net;
    QString domain = "none";
    QString nameServer = "none";
    QString ntpServer = "none";
    QString activeConfig;
    QByteArray configData;

    /// A whole backup of @p state.
    static BackupContents of(const ControllerState &state);

    /// The document of them, for the controller whose versions a FrontEnd tells.
    QByteArray document() const;
};

/// How a backup is collected from a controller that tells itself whether it is embedded. Nothing if
/// it fails.
std::optional<BackupContents> rehearseCollection(Rehearsal &rehearsal);
