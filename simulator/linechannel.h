#pragma once

#include "hostapi/iomanager.h"

#include <QByteArray>

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

    int sendCommandReply(char *reply, const char *format, ...) override;
    int queryString(char *reply, const char *format, ...) override;
    int queryInt(int *value, const char *format, ...) override;
    int queryDouble(double *value, const char *format, ...) override;
    int queryBool(bool *value, const char *format, ...) override;
    int sendCommand(const char *format, ...) override;

protected:
    LineChannel() = default;
    ~LineChannel() = default;

    /// Sends @p command and stores the textual answer, empty where the operation yields none.
    /// @return 0 for success; otherwise @p answer is ignored
    virtual int transact(Operation operation, const QByteArray &command, QByteArray *answer) = 0;

private:
    int askText(Operation operation, char *reply, const QByteArray &command);
};
