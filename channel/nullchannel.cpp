#include "channel/nullchannel.h"

#include "hostapi/backendversions.h"

namespace {
constexpr int failure = -1;
}

int NullChannel::setTimeout(int, int, int)
{
    return failure;
}

int NullChannel::sendCommandReply(char *, const char *, ...)
{
    return failure;
}

int NullChannel::queryString(char *, const char *, ...)
{
    return failure;
}

int NullChannel::queryInt(int *, const char *, ...)
{
    return failure;
}

int NullChannel::queryDouble(double *, const char *, ...)
{
    return failure;
}

int NullChannel::queryBool(bool *, const char *, ...)
{
    return failure;
}

int NullChannel::sendCommand(const char *, ...)
{
    return failure;
}

int NullChannel::postMessage(const char *, const char *, int, const char *)
{
    return failure;
}

int NullChannel::addMessageReceiver(const char *, MessageReceiver *)
{
    return failure;
}

int NullChannel::removeMessageReceiver(const char *, MessageReceiver *)
{
    return failure;
}

IOManager *NullChannel::orNull(IOManager *channel)
{
    static NullChannel nullChannel;
    return channel ? channel : &nullChannel;
}

BackendVersions *orNotGiven(BackendVersions *versions)
{
    static BackendVersions notGiven;
    return versions ? versions : &notGiven;
}
