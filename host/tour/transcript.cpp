#include "host/tour/transcript.h"

#include "host/channelmonitor.h"
#include "host/tour/stepfailed.h"

Transcript::Transcript(const QString &fileName, ChannelMonitor &monitor)
    : m_file(fileName)
{
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        throw StepFailed(QStringLiteral("cannot write %1").arg(fileName));
    }
    connect(&monitor, &ChannelMonitor::commandSent, this, &Transcript::writeCommand);
    connect(&monitor, &ChannelMonitor::timeoutChanged, this, &Transcript::writeTimeout);
    connect(&monitor, &ChannelMonitor::eventPosted, this, &Transcript::writeEvent);
}

void Transcript::heading(const QString &text)
{
    write(QStringLiteral("%1== %2").arg(m_isEmpty ? QString() : QStringLiteral("\n"), text));
}

void Transcript::writeCommand(const Exchange &exchange)
{
    QString line = QString::fromLatin1(LineChannel::nameOf(exchange.operation)) + QLatin1Char(' ')
        + QString::fromLatin1(exchange.command);
    if (exchange.result != 0) {
        line += QStringLiteral(" -> failed: ") + exchange.failureReason;
    } else if (!exchange.answer.isEmpty()) {
        line += QStringLiteral(" -> ") + QString::fromLatin1(exchange.answer);
    }
    write(line);
}

void Transcript::writeTimeout(int channel, int milliseconds, int flag)
{
    write(QStringLiteral("setTimeout %1 %2 %3").arg(channel).arg(milliseconds).arg(flag));
}

void Transcript::writeEvent(const QByteArray &category, const QByteArray &source, int level,
                            const QByteArray &text)
{
    write(QStringLiteral("postMessage %1 %2 %3 %4")
              .arg(QString::fromLatin1(category), QString::fromLatin1(source))
              .arg(level)
              .arg(QString::fromLatin1(text)));
}

void Transcript::write(const QString &line)
{
    m_isEmpty = false;
    m_file.write(line.toUtf8() + '\n');
}
