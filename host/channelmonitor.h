#pragma once

#include "simulator/channelobserver.h"

#include <QObject>

/// Makes everything that passes a channel known by signals, emitted before the caller gets its
/// answer. Passwords are masked, so that nobody who shows or writes down commands has to think of
/// them.
class ChannelMonitor final : public QObject, public ChannelObserver
{
    Q_OBJECT

public:
    void exchanged(const Exchange &exchange) override;
    void timeoutSet(int channel, int milliseconds, int flag) override
    {
        emit timeoutChanged(channel, milliseconds, flag);
    }
    void messagePosted(const QByteArray &category, const QByteArray &source, int level,
                       const QByteArray &text) override
    {
        emit eventPosted(category, source, level, text);
    }

signals:
    void commandSent(const Exchange &exchange);
    void timeoutChanged(int channel, int milliseconds, int flag);
    void eventPosted(const QByteArray &category, const QByteArray &source, int level,
                     const QByteArray &text);
};
