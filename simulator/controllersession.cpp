#include "simulator/controllersession.h"

#include "channel/identifiers.h"

#include <utility>

ControllerSession::ControllerSession(ControllerState state)
    : m_state(std::move(state))
{
    rebuildIndex();
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

int ControllerSession::indexOf(const QByteArray &identifier) const
{
    return m_index.value(identifier, -1);
}

const Configuration *ControllerSession::find(const QByteArray &identifier) const
{
    const int index = indexOf(identifier);
    return index < 0 ? nullptr : &m_state.configurations.at(index);
}

Configuration &ControllerSession::changeActive()
{
    return changeState().configurations[indexOf(m_state.activeIdentifier)];
}

void ControllerSession::activate(const QByteArray &identifier)
{
    if (identifier == m_state.activeIdentifier) {
        return;
    }
    changeState().activeIdentifier = identifier;
    forgetPresented();
}

bool ControllerSession::hasRoomFor(const Configuration &configuration) const
{
    const Configuration *replaced = find(configuration.identifier);
    const qint64 others = m_state.usedBytes() - (replaced == nullptr ? 0 : replaced->storedBytes());
    return others + configuration.storedBytes() <= m_state.storeCapacity;
}

void ControllerSession::store(const Configuration &configuration)
{
    const int index = indexOf(configuration.identifier);
    if (index >= 0) {
        changeState().configurations[index] = configuration;
        return;
    }
    m_index.insert(configuration.identifier, m_state.configurations.size());
    changeState().configurations.append(configuration);
}

void ControllerSession::remove(const QByteArray &identifier)
{
    const int index = indexOf(identifier);
    if (index < 0) {
        return;
    }
    changeState().configurations.remove(index);
    rebuildIndex();
    if (identifier == m_state.activeIdentifier) {
        activate(Identifiers::standard);
    }
}

bool ControllerSession::isChangeable(const Configuration &configuration) const
{
    return !configuration.isLocked()
        || (configuration.identifier == m_state.activeIdentifier
            && presented() != Presented::Nothing);
}

ControllerSession::Presented ControllerSession::presented() const
{
    return m_client->presentedInEra == m_era ? m_client->presented : Presented::Nothing;
}

void ControllerSession::setPresented(Presented presented)
{
    m_client->presented = presented;
    m_client->presentedInEra = m_era;
}

void ControllerSession::rebuildIndex()
{
    m_index.clear();
    for (int i = 0; i < m_state.configurations.size(); ++i) {
        m_index.insert(m_state.configurations.at(i).identifier, i);
    }
}
