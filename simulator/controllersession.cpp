#include "simulator/controllersession.h"

#include <utility>

ControllerSession::ControllerSession(const ControllerState &state)
    : m_state(state)
{
}

ControllerState &ControllerSession::changeState()
{
    m_isChanged = true;
    return m_state;
}

bool ControllerSession::takeChanged()
{
    return std::exchange(m_isChanged, false);
}
