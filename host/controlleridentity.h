#pragma once

#include <QString>

class IOManager;

/// What the host shows of the controller it is connected to. Texts that the controller did not give
/// are empty.
struct ControllerIdentity
{
    QString hostName;
    QString serial;
    QString model;               ///< in the controller's own words
    QString activeConfiguration; ///< identifier
    QString activeDescription;   ///< without the double quotes of the answer

    /// Whether the controller has said anything of itself.
    bool isKnown() const { return !(hostName + serial + model + activeConfiguration).isEmpty(); }
};

/// Asks the controller who it is. The channel should be the host's own: modules' time-outs, faults
/// and logs concern the one that is handed to them.
ControllerIdentity readControllerIdentity(IOManager &channel);
