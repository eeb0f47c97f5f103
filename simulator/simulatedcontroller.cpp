#include "simulator/simulatedcontroller.h"

#include "simulator/controllersession.h"

SimulatedController::SimulatedController(const ControllerState &state)
    : m_session(std::make_unique<ControllerSession>(state))
{
}

SimulatedController::~SimulatedController() = default;

Reply SimulatedController::execute(const QByteArray & /*command*/)
{
    return Reply::refused(QStringLiteral("unknown command"));
}

const ControllerState &SimulatedController::state() const
{
    return m_session->state();
}

void SimulatedController::setState(const ControllerState &state)
{
    m_session = std::make_unique<ControllerSession>(state);
    if (m_changed) {
        m_changed();
    }
}

void SimulatedController::setChangeCallback(std::function<void()> changed)
{
    m_changed = std::move(changed);
}
