#pragma once

#include "channel/configentry.h"

#include <QString>

#include <optional>

class Controller;
struct BackendVersions;

/// What the controller's store of configurations held when it was last read. Queries that fail are
/// reported to the host and passed over.
class ConfigurationList
{
public:
    /// @p controller and @p versions are not owned and must outlive the list, which is empty at
    /// first.
    ConfigurationList(const Controller &controller, const BackendVersions &versions);

    /// Whether the controller knows locks, when this was made.
    bool hasLocks() const { return m_hasLocks; }

    /// Asks for the free fraction of the store; 1 if the controller cannot tell.
    double readFreeSpace() const;
    /// Asks how many configurations there are; nothing if the controller does not answer.
    std::optional<int> readCount() const;
    /// Asks which configuration is active and reads @p count configurations.
    void read(int count);
    /// Forgets the configurations.
    void clear() { m_entries.clear(); }

    /// In the order of the controller's slots.
    const ConfigEntryList &entries() const { return m_entries; }
    /// The identifier of the active configuration, which need not be among the entries.
    const QString &activeId() const { return m_activeId; }
    /// The description of the active configuration; empty if it is not among the entries.
    QString activeDescription() const;

private:
    struct Replies;

    void readActiveId();
    ConfigEntry readSlot(int slot, Replies *replies) const;

    const Controller &m_controller;
    const BackendVersions &m_versions;
    const bool m_hasLocks;
    QString m_activeId;
    ConfigEntryList m_entries;
};
