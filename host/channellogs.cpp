#include "host/channellogs.h"

#include "host/channelmonitor.h"

#include <QTime>

namespace {

constexpr double microsecondsPerMillisecond = 1000.0;

enum CommandColumn { commandColumn = 2, answerColumn = 3, durationColumn = 5 };

QString now()
{
    return QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz"));
}

QString milliseconds(qint64 microseconds)
{
    return ChannelLogs::tr("%1 ms").arg(double(microseconds) / microsecondsPerMillisecond, 0, 'f',
                                        3);
}

QString outcome(const Exchange &exchange)
{
    const QString result = QString::number(exchange.result);
    return exchange.failureReason.isEmpty()
        ? result
        : QStringLiteral("%1 (%2)").arg(result, exchange.failureReason);
}

LogRow rowOf(const Exchange &exchange)
{
    return {{now(), QString::fromLatin1(LineChannel::nameOf(exchange.operation)),
             QString::fromLatin1(exchange.command), QString::fromLatin1(exchange.answer),
             outcome(exchange), milliseconds(exchange.microseconds)},
            exchange.result != 0};
}

} // namespace

ChannelLogs::ChannelLogs(ChannelMonitor &monitor)
    : m_events({{tr("Time"), QStringLiteral("00:00:00.000")},
                {tr("Category"), QStringLiteral("GlobalEvent")},
                {tr("Source"), QStringLiteral("ConfigurationModule")},
                {tr("Level"), QStringLiteral("0"), Qt::AlignHCenter},
                {tr("Text"), QStringLiteral("ActiveConfigurationChanged"), Qt::AlignLeft, true}},
               capacity)
    , m_commands({{tr("Time"), QStringLiteral("00:00:00.000")},
                  {tr("Operation"), QStringLiteral("sendCommandReply")},
                  {tr("Command"), QStringLiteral("config owner_of_config config20231106081559902"),
                   Qt::AlignLeft, true},
                  {tr("Answer"), QStringLiteral("config20231106081559902")},
                  {tr("Result"), QStringLiteral("-1 (timed out)")},
                  {tr("Duration"), QStringLiteral("100.000 ms"), Qt::AlignRight}},
                 capacity)
{
    connect(&monitor, &ChannelMonitor::eventPosted, this, &ChannelLogs::logEvent);
    connect(&monitor, &ChannelMonitor::commandSent, this, &ChannelLogs::logCommand);
    connect(&monitor, &ChannelMonitor::timeoutChanged, this, &ChannelLogs::logTimeout);
}

void ChannelLogs::logEvent(const QByteArray &category, const QByteArray &source, int level,
                           const QByteArray &text)
{
    const bool isReport = category != "GlobalEvent";
    m_events.append({{now(), QString::fromLatin1(category), QString::fromLatin1(source),
                      QString::number(level), QString::fromLatin1(text)},
                     isReport});
}

void ChannelLogs::logCommand(const Exchange &exchange)
{
    if (m_run.goesOnWith(exchange)) {
        m_lastCommand.cells[commandColumn] = m_run.command();
        m_lastCommand.cells[answerColumn] = m_run.answer();
        m_lastCommand.cells[durationColumn] = milliseconds(m_run.microseconds());
        m_commands.replaceLast(m_lastCommand);
    } else {
        m_lastCommand = rowOf(exchange);
        m_commands.append(m_lastCommand);
    }
}

void ChannelLogs::logTimeout(int channel, int milliseconds, int flag)
{
    m_run.end();
    m_commands.append({{now(),
                        QStringLiteral("setTimeout"),
                        QStringLiteral("%1 %2 %3").arg(channel).arg(milliseconds).arg(flag),
                        {},
                        {},
                        {}},
                       false});
}
