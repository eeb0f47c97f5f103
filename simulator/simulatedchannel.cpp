#include "simulator/simulatedchannel.h"

#include "simulator/channelobserver.h"
#include "simulator/simulatedcontroller.h"

#include <QThread>

#include <algorithm>

namespace {

void sleepFor(int milliseconds)
{
    if (milliseconds > 0) {
        QThread::msleep(static_cast<unsigned long>(milliseconds));
    }
}

} // namespace

SimulatedChannel::SimulatedChannel(SimulatedController &controller)
    : m_controller(controller)
    , m_sleep(sleepFor)
{
}

int SimulatedChannel::setTimeout(int channel, int milliseconds, int flag)
{
    m_timeoutMs = std::max(0, milliseconds);
    if (observer() != nullptr) {
        observer()->timeoutSet(channel, milliseconds, flag);
    }
    return success;
}

int SimulatedChannel::transact(Operation /*operation*/, const QByteArray &command,
                               QByteArray *answer)
{
    const std::optional<Fault> fault = m_faults.next(command);
    const bool isCut = fault && fault->kind == Fault::Kind::Fail;
    const bool isReplaced = fault && fault->kind == Fault::Kind::Answer;
    const qint64 latencyMs = qint64{m_latencyMs} + (fault ? fault->milliseconds : 0);
    const bool isLate = latencyMs > m_timeoutMs;

    m_sleep(static_cast<int>(std::min<qint64>(latencyMs, m_timeoutMs)));
    if (isCut) {
        return failed(Faulty, QStringLiteral("failed on purpose"));
    }
    const Reply reply = m_controller.execute(command);
    if (isLate) {
        return failed(TimedOut, QStringLiteral("no answer within %1 ms").arg(m_timeoutMs));
    }
    if (!reply.ok && !isReplaced) {
        return failed(Refused, reply.reason);
    }
    *answer = isReplaced ? fault->answer : reply.text;
    return success;
}

int SimulatedChannel::failed(Result result, const QString &reason)
{
    m_failureReason = reason;
    return result;
}
