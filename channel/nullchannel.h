#pragma once

#include "hostapi/iomanager.h"

struct BackendVersions;

/// Stands in for a command channel that the host never set: every command fails, nothing is posted
/// anywhere.
class NullChannel final : public IOManager
{
public:
    int setTimeout(int channel, int milliseconds, int flag) override;
    int sendCommandReply(char *reply, const char *format, ...) override;
    int queryString(char *reply, const char *format, ...) override;
    int queryInt(int *value, const char *format, ...) override;
    int queryDouble(double *value, const char *format, ...) override;
    int queryBool(bool *value, const char *format, ...) override;
    int sendCommand(const char *format, ...) override;
    int postMessage(const char *category, const char *source, int level, const char *text) override;
    int addMessageReceiver(const char *name, MessageReceiver *receiver) override;
    int removeMessageReceiver(const char *name, MessageReceiver *receiver) override;

    /// @p channel, or the null channel where there is none.
    static IOManager *orNull(IOManager *channel);
};

/// @p versions, or a record in which nothing is given where there is none.
BackendVersions *orNotGiven(BackendVersions *versions);
