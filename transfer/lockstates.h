#pragma once

#include "channel/configentry.h"

#include <QHash>

/// Whether a configuration is locked, by identifier; those that are not on the controller are
/// missing.
using LockStates = QHash<QString, bool>;

/// The lock states of @p configurations. An identifier that occurs twice is locked if either is.
inline LockStates lockStates(const ConfigEntryList &configurations)
{
    LockStates states;
    for (const ConfigEntry &configuration : configurations) {
        states[configuration.identifier] |= configuration.locked;
    }
    return states;
}
