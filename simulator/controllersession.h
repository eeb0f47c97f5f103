#pragma once

#include "simulator/controllerstate.h"

/// What the commands work on: the controller's state, and what it remembers from one command to
/// the next.
class ControllerSession
{
public:
    explicit ControllerSession(const ControllerState &state);

    const ControllerState &state() const { return m_state; }
    /// The state to be changed; the change is noted.
    ControllerState &changeState();
    /// Whether the state was changed since the last call.
    bool takeChanged();

private:
    ControllerState m_state;
    bool m_isChanged = false;
};
