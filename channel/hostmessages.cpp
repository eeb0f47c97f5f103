#include "channel/hostmessages.h"

#include "hostapi/iomanager.h"

#include <QString>

namespace {
constexpr int errorLevel = 1;
constexpr int eventLevel = 1;
} // namespace

void HostMessages::reportError(IOManager *channel, const QString &text)
{
    channel->postMessage("standard", "VELTRA4", errorLevel, text.toLatin1().constData());
}

bool HostMessages::succeededOrReported(int result, IOManager *channel, const char *text)
{
    if (result != 0) {
        reportError(channel, QString::fromLatin1(text));
    }
    return result == 0;
}

void HostMessages::announceActiveConfigurationChanged(IOManager *channel)
{
    // Listeners go by "ConfigurationModule", in the singular, although the module's class is called
    // otherwise.
    channel->postMessage("GlobalEvent", "ConfigurationModule", eventLevel,
                         "ActiveConfigurationChanged");
}
