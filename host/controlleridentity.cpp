#include "host/controlleridentity.h"

#include "hostapi/iomanager.h"

#include <array>

namespace {

constexpr std::size_t replySize = 200;

/// Asks questions and remembers whether one was answered.
class Interview
{
public:
    explicit Interview(IOManager &channel)
        : m_channel(channel)
    {
    }

    template <typename... Arguments>
    QString ask(const char *format, Arguments... arguments)
    {
        std::array<char, replySize> reply = {};
        if (m_channel.queryString(reply.data(), format, arguments...) == 0) {
            m_isAnswered = true;
        }
        return QString::fromLatin1(reply.data()).remove(QLatin1Char('"'));
    }

    bool isAnswered() const { return m_isAnswered; }

private:
    IOManager &m_channel;
    bool m_isAnswered = false;
};

} // namespace

ControllerIdentity readControllerIdentity(IOManager &channel)
{
    Interview interview(channel);
    ControllerIdentity identity;
    identity.hostName = interview.ask("system hostname");
    identity.serial = interview.ask("system controller_serial");
    identity.model = interview.ask("system model_description");
    identity.activeConfiguration = interview.ask("config active_config");
    if (!identity.activeConfiguration.isEmpty()) {
        identity.activeDescription = interview.ask(
            "config desc_of_config %s", identity.activeConfiguration.toLatin1().constData());
    }
    identity.isAnswered = interview.isAnswered();
    return identity;
}
