#pragma once

#include "host/logmodel.h"

#include <QObject>

class ChannelMonitor;
struct Exchange;

/// The logs of what modules post and of what they send to the controller.
class ChannelLogs : public QObject
{
    Q_OBJECT

public:
    /// The most rows that each log keeps.
    static constexpr int capacity = 20000;

    explicit ChannelLogs(ChannelMonitor &monitor);

    LogModel *events() { return &m_events; }
    LogModel *commands() { return &m_commands; }

private:
    void logEvent(const QByteArray &category, const QByteArray &source, int level,
                  const QByteArray &text);
    void logCommand(const Exchange &exchange);
    void logTimeout(int channel, int milliseconds, int flag);

    LogModel m_events;
    LogModel m_commands;
};
