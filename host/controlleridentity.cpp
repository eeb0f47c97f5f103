#include "host/controlleridentity.h"

#include "hostapi/iomanager.h"

#include <array>

namespace {

constexpr std::size_t replySize = 200;

QString ask(IOManager &channel, const QByteArray &command)
{
    std::array<char, replySize> reply = {};
    channel.queryString(reply.data(), "%s", command.constData());
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
        identity.activeDescription =
            ask(channel, "config desc_of_config " + identity.activeConfiguration.toLatin1());
    }
    return identity;
}
