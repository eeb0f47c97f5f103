#pragma once

#include "hostapi/messagereceiver.h"

#include <QObject>
#include <QString>

/// Turns the two kinds of host message that concern the plug-in into signals.
///
/// Whoever creates it registers it with the host and unregisters it before destroying it. The host
/// calls it in the GUI thread, and connected slots run inside that call.
class ConfigurationsMessagereceiver : public QObject, public MessageReceiver
{
    Q_OBJECT

public:
    /// Its parent owns it; the host does not.
    using QObject::QObject;

    /// Emits the signal that belongs to @p source, which may be null; other messages are not for
    /// the plug-in.
    /// @return always 0
    int receiveMessage(int id, const char *source, const char *text) override;

signals:
    /// The host tells its own version, "v4.12.3" for example.
    void sendModuleParentVersion(QString version);
    /// The host tells when the front end was last updated.
    void receiveLastFeUpdateDate(QString date);
};
