#pragma once

#include <QFile>
#include <QObject>

class ChannelMonitor;
struct Exchange;

/// Writes down everything that passes the channel, below a heading for each step of the tour.
class Transcript : public QObject
{
    Q_OBJECT

public:
    /// @throw StepFailed if @p fileName cannot be written
    Transcript(const QString &fileName, ChannelMonitor &monitor);

    void heading(const QString &text);
    void write(const QString &line);

private:
    void writeCommand(const Exchange &exchange);
    void writeTimeout(int channel, int milliseconds, int flag);
    void writeEvent(const QByteArray &category, const QByteArray &source, int level,
                    const QByteArray &text);

    QFile m_file;
    bool m_isEmpty = true;
};
