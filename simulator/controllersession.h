#pragma once

#include "simulator/controllerstate.h"
#include "simulator/download.h"
#include "simulator/upload.h"

#include <QHash>

/// What the commands work on: the controller's state, and what it remembers from one command to
/// the next.
class ControllerSession
{
public:
    /// The password by which the active configuration was made changeable.
    enum class Presented { Nothing, Password, SuperPassword };

    explicit ControllerSession(ControllerState state);

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
    /// Makes another configuration active; a presented password is forgotten.
    void activate(const QByteArray &identifier);

    /// Whether the store has room for @p configuration in place of one of that identifier.
    bool hasRoomFor(const Configuration &configuration) const;
    /// Adds @p configuration in a new slot, or replaces the one of that identifier in its slot.
    void store(const Configuration &configuration);
    /// Removes it; if it was the active one, the standard configuration becomes active.
    void remove(const QByteArray &identifier);

    /// Whether @p configuration is not locked, or active with the password presented.
    bool isChangeable(const Configuration &configuration) const;
    Presented presented() const { return m_presented; }
    void setPresented(Presented presented) { m_presented = presented; }

    Download &download() { return m_download; }
    Upload &upload() { return m_upload; }

private:
    void rebuildIndex();

    ControllerState m_state;
    QHash<QByteArray, int> m_index; // by identifier
    Presented m_presented = Presented::Nothing;
    Download m_download;
    Upload m_upload;
    bool m_isChanged = false;
};
