#include "simulator/simulatedcontroller.h"

#include "simulator/commandgroups.h"
#include "simulator/commandtable.h"
#include "simulator/controllersession.h"

#include <utility>

SimulatedController::SimulatedController(const ControllerState &state)
    : m_table(std::make_unique<CommandTable>(CommandGroups::all()))
    , m_client(std::make_unique<ControllerClient>())
    , m_session(std::make_unique<ControllerSession>(state))
{
}

SimulatedController::~SimulatedController() = default;

Reply SimulatedController::execute(const QByteArray &command)
{
    return execute(*m_client, command);
}

Reply SimulatedController::execute(ControllerClient &client, const QByteArray &command)
{
    m_session->serve(client);
    Reply reply = m_table->execute(*m_session, command);
    if (m_session->takeChanged()) {
        announceChange();
    }
    return reply;
}

const ControllerState &SimulatedController::state() const
{
    return m_session->state();
}

void SimulatedController::setState(const ControllerState &state)
{
    m_client = std::make_unique<ControllerClient>();
    m_session = std::make_unique<ControllerSession>(state);
    announceChange();
}

void SimulatedController::setChangeCallback(std::function<void()> changed)
{
    m_changed = std::move(changed);
}

void SimulatedController::announceChange() const
{
    if (m_changed) {
        m_changed();
    }
}
