#pragma once

#include <QString>

class IOManager;

/// What the host shows of the controller it is connected to. Texts that the controller did not give
/// are empty.
struct ControllerIdentity
{
    bool isAnswered = false; ///< whether the controller has answered any of the questions
    QString hostName;
    QString serial;
    QString model;               ///< in the controller's own words
    QString activeConfiguration; ///< identifier
    QString activeDescription;   ///< without the double quotes of the answer
};

/// Asks the controller who it is. The channel should be the host's own: modules' time-outs, faults
/// and logs concern the one that is handed to them.
ControllerIdentity readControllerIdentity(IOManager &channel);
