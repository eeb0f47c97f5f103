#pragma once

#include "hostapi/iomanager.h"

#include <QByteArray>
#include <QString>

class ChannelObserver;

/// A command channel in terms of whole lines: what the stand-ins for a real host's channel derive
/// from.
///
/// It formats each command, leaves the exchange to transact(), and puts the answer where the caller
/// wants it, keeping to the limits that IOManager promises.
class LineChannel : public IOManager
{
public:
    /// Which of the channel's operations a line was sent through.
    enum class Operation {
        SendCommandReply,
        QueryString,
        QueryInt,
        QueryDouble,
        QueryBool,
        SendCommand
    };

    /// The most that is ever written into a reply buffer, the terminating NUL included.
    static constexpr int replyCapacity = 200;

    /// The operation's name in the interface, "queryString" for example.
    static const char *nameOf(Operation operation);

    /// @p observer is told of every exchange from now on; null ends it. It is not owned.
    void setObserver(ChannelObserver *observer) { m_observer = observer; }

    int sendCommandReply(char *reply, const char *format, ...) override;
    int queryString(char *reply, const char *format, ...) override;
    int queryInt(int *value, const char *format, ...) override;
    int queryDouble(double *value, const char *format, ...) override;
    int queryBool(bool *value, const char *format, ...) override;
    int sendCommand(const char *format, ...) override;

protected:
    /// The result of what went well.
    static constexpr int success = 0;

    LineChannel() = default;
    ~LineChannel() = default;

    /// Null where nobody observes.
    ChannelObserver *observer() const { return m_observer; }

    /// Sends @p command and stores the textual answer, empty where the operation yields none.
    /// @return 0 for success; otherwise @p answer is ignored
    virtual int transact(Operation operation, const QByteArray &command, QByteArray *answer) = 0;
    /// Why the last transact() failed, for people.
    virtual QString failureReason() const { return {}; }

private:
    template <typename Take>
    int exchange(Operation operation, const char *format, const QByteArray &command, Take take);

    ChannelObserver *m_observer = nullptr;
};
