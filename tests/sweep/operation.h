#pragma once

#include "tests/sweep/outcome.h"

#include <QByteArrayList>

#include <functional>

class Rehearsal;
class Stage;

/// Something that a user does with the plug-in, and what has to come of it.
struct Operation
{
    /// What the controller and the user's home directory hold before.
    ControllerState before;
    Files files;
    /// What the user does; calls Stage::begin() where the operation begins.
    std::function<void(Stage &)> perform;
    /// The same by the rules.
    std::function<void(Rehearsal &)> rehearse;
    /// The configurations whose loss or change the user risks by asking for this. All others have
    /// to survive everything.
    QByteArrayList risked;
};
