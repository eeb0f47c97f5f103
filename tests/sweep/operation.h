#pragma once

#include "simulator/controllerstate.h"
#include "simulator/faultplan.h"

#include <QByteArrayList>
#include <QMap>

#include <functional>

class Rehearsal;
class Stage;

/// The files below a folder, by their path within it.
using Files = QMap<QString, QByteArray>;

/// A controller that is small enough for thousands of operations, and still has several chunks in
/// each transfer: four of the sample's configurations, the standard one, the active one, the locked
/// one and the fair's, in this order.
ControllerState smallSample();

/// Something that a user does with the plug-in, and what has to come of it.
struct Operation
{
    /// What the user does; calls Stage::begin() where the operation begins.
    std::function<void(Stage &)> perform;
    /// The same by the rules.
    std::function<void(Rehearsal &)> rehearse;
    /// The configurations whose loss or change the user risks by asking for this. All others have
    /// to survive everything.
    QByteArrayList risked = {};
    /// What the controller and the user's home directory hold before.
    ControllerState before = smallSample();
    Files files = {};
};

/// Where in an operation something goes wrong, and what.
struct FaultPoint
{
    int command = 1; ///< counted from 1, beginning with the operation
    Fault fault;
    bool isLasting = false; ///< whether it befalls all later commands as well
};
