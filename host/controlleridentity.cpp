#include "host/controlleridentity.h"

#include "hostapi/iomanager.h"

#include <array>

namespace {

constexpr std::size_t replySize = 200;

// Answers to "%s" commands with an argument, and to plain ones with an empty one.
template <typename... Arguments>
QString ask(IOManager &channel, const char *format, Arguments... arguments)
{
    std::array<char, replySize> reply = {};
    channel.queryString(reply.data(), format, arguments...);
    return QString::fromLatin1(reply.data()).remove(QLatin1Char('"'));
}

} // namespace

ControllerIdentity readControllerIdentity(IOManager &channel)
{
    ControllerIdentity identity;
    identity.hostName = ask(channel, "system hostname");
    identity.serial = ask(channel, "system controller_serial");
    identity.model = ask(channel, "system model_description");
    identity.activeConfiguration = ask(channel, "config active_config");
    if (!identity.activeConfiguration.isEmpty()) {
        identity.activeDescription = ask(channel, "config desc_of_config %s",
                                         identity.activeConfiguration.toLatin1().constData());
    }
    return identity;
}
