#pragma once

#include "hostapi/iomanager.h"

#include <QPointer>

/// The host's command channel for an object that the host may destroy within any of its calls, as
/// when it leaves because of an event that it is being sent.
///
/// Hands every call on. When it comes back and the owner is gone, OwnerDestroyed is thrown, so that
/// nobody goes on who would touch the owner; see survives(). Nothing is thrown by the two
/// operations for message receivers: they belong into the owner's constructor and destructor, where
/// the host cannot destroy it.
class GuardedChannel final : public IOManager
{
public:
    /// @p host and @p owner are not owned.
    GuardedChannel(IOManager *host, QObject *owner);

    /// The channel without the guard, for whoever has one of his own.
    IOManager *host() const { return m_host; }

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

private:
    template <typename Call>
    int guarded(Call call) const;

    IOManager *m_host;
    QPointer<QObject> m_owner;
};
