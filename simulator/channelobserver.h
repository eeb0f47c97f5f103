#pragma once

#include "simulator/linechannel.h"

#include <QByteArray>
#include <QString>

/// One command and what became of it.
struct Exchange
{
    LineChannel::Operation operation = LineChannel::Operation::SendCommand;
    QByteArray format;       ///< as the caller gave it, with its place holders
    QByteArray command;      ///< what became of it
    QByteArray answer;       ///< as the controller gave it, also where it could not be converted
    int result = 0;          ///< what the caller was given; 0 is success
    QString failureReason;   ///< for people; empty on success
    qint64 microseconds = 0; ///< how long the caller was blocked
};

/// Sees everything that passes a LineChannel, after it happened. Must not send commands itself.
class ChannelObserver
{
public:
    virtual void exchanged(const Exchange & /*exchange*/) { }
    virtual void timeoutSet(int /*channel*/, int /*milliseconds*/, int /*flag*/) { }
    virtual void messagePosted(const QByteArray & /*category*/, const QByteArray & /*source*/,
                               int /*level*/, const QByteArray & /*text*/)
    {
    }

protected:
    ~ChannelObserver() = default;
};
