#include "dialogs/configurationlist.h"

#include "channel/controller.h"
#include "channel/quotes.h"
#include "channel/replybuffer.h"
#include "channel/versiongate.h"
#include "hostapi/backendversions.h"

#include <algorithm>

/// The answers of one slot. They live through all slots of a refresh: after a failed query an entry
/// holds what the one before it did.
struct ConfigurationList::Replies
{
    ReplyBuffer identifier;
    ReplyBuffer owner;
    ReplyBuffer description;
    ReplyBuffer hasPassword;
};

ConfigurationList::ConfigurationList(const Controller &controller, const BackendVersions &versions)
    : m_controller(controller)
    , m_versions(versions)
    , m_hasLocks(VersionGate::hasLocks(versions.interfaceVersion))
{
}

double ConfigurationList::readFreeSpace() const
{
    if (!VersionGate::reportsFreeSpace(m_versions.interfaceVersion)) {
        return 1.0;
    }
    const std::optional<double> free = m_controller.freeSpace();
    m_controller.reportUnless(free.has_value(), "Unable to get free space of configuration store");
    return free.value_or(1.0);
}

std::optional<int> ConfigurationList::readCount() const
{
    const std::optional<int> count = m_controller.numberOfConfigurations();
    m_controller.reportUnless(count.has_value(), "Unable to get number of configurations");
    return count ? std::optional(std::max(*count, 0)) : std::nullopt;
}

void ConfigurationList::read(int count)
{
    ReplyBuffer active;
    // The text of a failed activation; operators know it by this name.
    m_controller.reportUnless(m_controller.activeConfiguration(&active),
                              "Unable to change the configuration");
    m_activeId = active.text();
    Replies replies;
    for (int slot = 1; slot <= count; ++slot) {
        m_entries.append(readSlot(slot, &replies));
    }
}

QString ConfigurationList::activeDescription() const
{
    const auto active =
        std::find_if(m_entries.cbegin(), m_entries.cend(),
                     [this](const ConfigEntry &entry) { return entry.identifier == m_activeId; });
    return active != m_entries.cend() ? active->description : QString();
}

ConfigEntry ConfigurationList::readSlot(int slot, Replies *replies) const
{
    m_controller.reportUnless(m_controller.identifierInSlot(slot, &replies->identifier),
                              "Unable to get configuration information");
    ConfigEntry entry;
    entry.identifier = replies->identifier.text();
    const Latin1 id(entry.identifier);
    m_controller.reportUnless(m_controller.ownerOf(id, &replies->owner),
                              "Unable to get the owner of configuration");
    m_controller.reportUnless(m_controller.descriptionOf(id, &replies->description),
                              "Unable to get description of configuration");
    m_controller.reportUnless(m_controller.hasPassword(id, &replies->hasPassword),
                              "Unable to get whether configuration has pasword");
    entry.description = withoutDoubleQuotes(replies->description.text());
    entry.owner = withoutDoubleQuotes(replies->owner.text());
    entry.locked = m_hasLocks && replies->hasPassword.text() == QLatin1String("yes");
    return entry;
}
