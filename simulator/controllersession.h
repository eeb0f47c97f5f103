#pragma once

#include "simulator/controllerclient.h"
#include "simulator/controllerstate.h"

#include <QHash>

/// What the commands work on: the controller's state, and what it remembers of the client that it
/// is serving.
class ControllerSession
{
public:
    using Presented = ControllerClient::Presented;

    explicit ControllerSession(ControllerState state);

    /// The commands from now on are those of @p client, which is not owned.
    void serve(ControllerClient &client) { m_client = &client; }

    const ControllerState &state() const { return m_state; }
    /// The state to be changed, except for which configurations there are; the change is noted.
    ControllerState &changeState();
    /// Whether the state was changed since the last call.
    bool takeChanged();

    /// Where the configuration stands in the list, -1 if there is none of that identifier.
    int indexOf(const QByteArray &identifier) const;
    /// Null if there is none of that identifier.
    const Configuration *find(const QByteArray &identifier) const;
    /// Null if there is none, which only an odd state can bring about.
    const Configuration *active() const { return find(m_state.activeIdentifier); }
    /// The active configuration to be changed; there must be one.
    Configuration &changeActive();
    /// Makes another configuration active; presented passwords are forgotten.
    void activate(const QByteArray &identifier);

    /// Whether the store has room for @p configuration in place of one of that identifier.
    bool hasRoomFor(const Configuration &configuration) const;
    /// Adds @p configuration in a new slot, or replaces the one of that identifier in its slot.
    void store(const Configuration &configuration);
    /// Removes it; if it was the active one, the standard configuration becomes active.
    void remove(const QByteArray &identifier);

    /// Whether @p configuration is not locked, or active with the password presented.
    bool isChangeable(const Configuration &configuration) const;
    Presented presented() const;
    void setPresented(Presented presented);
    /// Forgets what any client has presented.
    void forgetPresented() { ++m_era; }

    Download &download() { return m_client->download; }
    Upload &upload() { return m_client->upload; }

private:
    void rebuildIndex();

    ControllerState m_state;
    QHash<QByteArray, int> m_index; // by identifier
    ControllerClient *m_client = nullptr;
    int m_era = 0; // what was presented in an earlier one does not count
    bool m_isChanged = false;
};
