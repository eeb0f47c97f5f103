#include "channel/guardedchannel.h"

#include "channel/commandline.h"
#include "channel/survives.h"

// Formats the variable arguments of the surrounding function into the constant `line`.
#define FORMAT_LINE(format)                                                                        \
    va_list arguments;                                                                             \
    va_start(arguments, format);                                                                   \
    const QByteArray line = commandLine(format, arguments);                                        \
    va_end(arguments)

GuardedChannel::GuardedChannel(IOManager *host, QObject *owner)
    : m_host(host)
    , m_owner(owner)
{
}

template <typename Call>
int GuardedChannel::guarded(Call call) const
{
    const QPointer<QObject> owner(m_owner); // this channel may be gone as well
    const int result = call(m_host);
    if (!owner) {
        throw OwnerDestroyed();
    }
    return result;
}

int GuardedChannel::setTimeout(int channel, int milliseconds, int flag)
{
    return guarded([=](IOManager *host) { return host->setTimeout(channel, milliseconds, flag); });
}

int GuardedChannel::sendCommandReply(char *reply, const char *format, ...)
{
    FORMAT_LINE(format);
    return guarded(
        [&](IOManager *host) { return host->sendCommandReply(reply, "%s", line.constData()); });
}

int GuardedChannel::queryString(char *reply, const char *format, ...)
{
    FORMAT_LINE(format);
    return guarded(
        [&](IOManager *host) { return host->queryString(reply, "%s", line.constData()); });
}

int GuardedChannel::queryInt(int *value, const char *format, ...)
{
    FORMAT_LINE(format);
    return guarded([&](IOManager *host) { return host->queryInt(value, "%s", line.constData()); });
}

int GuardedChannel::queryDouble(double *value, const char *format, ...)
{
    FORMAT_LINE(format);
    return guarded(
        [&](IOManager *host) { return host->queryDouble(value, "%s", line.constData()); });
}

int GuardedChannel::queryBool(bool *value, const char *format, ...)
{
    FORMAT_LINE(format);
    return guarded([&](IOManager *host) { return host->queryBool(value, "%s", line.constData()); });
}

int GuardedChannel::sendCommand(const char *format, ...)
{
    FORMAT_LINE(format);
    return guarded([&](IOManager *host) { return host->sendCommand("%s", line.constData()); });
}

int GuardedChannel::postMessage(const char *category, const char *source, int level,
                                const char *text)
{
    return guarded(
        [=](IOManager *host) { return host->postMessage(category, source, level, text); });
}

int GuardedChannel::addMessageReceiver(const char *name, MessageReceiver *receiver)
{
    return m_host->addMessageReceiver(name, receiver);
}

int GuardedChannel::removeMessageReceiver(const char *name, MessageReceiver *receiver)
{
    return m_host->removeMessageReceiver(name, receiver);
}
