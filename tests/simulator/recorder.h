#pragma once

#include "simulator/channelobserver.h"

#include <QStringList>

/// Writes down what passes a channel, one line each: the operation and the command with what became
/// of it, for example "queryString config desc -> text" or "sendCommand x failed 3: why", or the
/// arguments of what is no command.
class Recorder final : public ChannelObserver
{
public:
    void exchanged(const Exchange &exchange) override
    {
        const QString outcome = exchange.result == 0
            ? "-> " + QString::fromLatin1(exchange.answer)
            : QString("failed %1: ").arg(exchange.result) + exchange.failureReason;
        lines << QString("%1 %2 ").arg(LineChannel::nameOf(exchange.operation), exchange.command)
                + outcome;
    }
    void timeoutSet(int channel, int milliseconds, int flag) override
    {
        lines << QString("timeout %1 %2 %3").arg(channel).arg(milliseconds).arg(flag);
    }
    void messagePosted(const QByteArray &category, const QByteArray &source, int level,
                       const QByteArray &text) override
    {
        lines << QString("%1 %2 %3 %4").arg(category, source, QString::number(level), text);
    }

    QStringList lines;
};
