#pragma once

#include "host/chunkrun.h"
#include "host/logmodel.h"

#include <QObject>

class ChannelMonitor;
struct Exchange;

/// The logs of what modules post and of what they send to the controller. The chunks of a transfer
/// share one row, which leaves what came before in sight; those that fail stand apart.
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
    ChunkRun m_run;
    LogRow m_lastCommand;
};
