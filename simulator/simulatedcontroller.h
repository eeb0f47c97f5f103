#pragma once

#include "simulator/controllerstate.h"
#include "simulator/reply.h"

#include <functional>
#include <memory>

class CommandTable;
class ControllerSession;
struct ControllerClient;

/// A tracking controller without the tracking: holds a controller's whole state and answers the
/// command vocabulary.
///
/// Takes any bytes as a command: what is no command is refused with a reason. Not thread-safe.
class SimulatedController
{
public:
    explicit SimulatedController(const ControllerState &state = ControllerState::sample());
    ~SimulatedController();
    SimulatedController(const SimulatedController &) = delete;
    SimulatedController &operator=(const SimulatedController &) = delete;

    /// Executes one command line without line end, for the one client that every controller has.
    Reply execute(const QByteArray &command);
    /// Executes one command line for another client. Clients end with the state: after setState()
    /// come new ones.
    Reply execute(ControllerClient &client, const QByteArray &command);

    const ControllerState &state() const;
    /// Replaces the state, as if another controller had been started in its place: presented
    /// passwords and transfers under way are gone. Calls the change callback.
    void setState(const ControllerState &state);

    /// @p changed is called after each command that changed the state, before its answer is
    /// returned.
    void setChangeCallback(std::function<void()> changed);

private:
    void announceChange() const;

    std::unique_ptr<const CommandTable> m_table;
    std::unique_ptr<ControllerClient> m_client;
    std::unique_ptr<ControllerSession> m_session;
    std::function<void()> m_changed;
};
