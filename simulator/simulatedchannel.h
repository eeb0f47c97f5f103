#pragma once

#include "simulator/faultplan.h"
#include "simulator/messagechannel.h"

#include <functional>
#include <utility>

class SimulatedController;

/// A command channel that leads to a simulated controller in the same process.
///
/// Commands take a settable latency. One that takes longer than the time-out in force fails when
/// that has passed; the controller executes it all the same, as a real one would.
class SimulatedChannel final : public MessageChannel
{
public:
    static constexpr int defaultTimeoutMs = 5000;

    /// Results of the operations apart from 0.
    enum Result {
        Refused = 1, ///< the controller refused the command
        TimedOut = 2,
        Faulty = 3 ///< the fault plan said so
    };

    /// @p controller is not owned and must outlive the channel.
    explicit SimulatedChannel(SimulatedController &controller);

    void setLatency(int milliseconds) { m_latencyMs = milliseconds; }
    /// Replaces what waits, QThread::msleep() at first, so that a test need not wait.
    void setSleep(std::function<void(int milliseconds)> sleep) { m_sleep = std::move(sleep); }
    /// What goes wrong from now on.
    FaultPlan &faults() { return m_faults; }

    /// The time-out in force, in milliseconds.
    int timeoutMs() const { return m_timeoutMs; }

    int setTimeout(int channel, int milliseconds, int flag) override;

private:
    int transact(Operation operation, const QByteArray &command, QByteArray *answer) override;
    QString failureReason() const override { return m_failureReason; }
    int failed(Result result, const QString &reason);

    SimulatedController &m_controller;
    FaultPlan m_faults;
    std::function<void(int)> m_sleep;
    QString m_failureReason;
    int m_latencyMs = 0;
    int m_timeoutMs = defaultTimeoutMs;
};
