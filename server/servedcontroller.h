#pragma once

#include "simulator/faultplan.h"
#include "simulator/simulatedcontroller.h"

/// The controller that a server offers to its clients: a simulated one that may be slow, go wrong
/// on purpose, and keep its state in a file.
class ServedController
{
public:
    /// What becomes of one command.
    struct Outcome
    {
        Reply reply;
        int delayMs = 0; ///< how long to hold the answer back
    };

    ServedController();
    Q_DISABLE_COPY_MOVE(ServedController)

    /// Keeps the state in @p path from now on, beginning with what is in there; a missing file will
    /// be created. To be called before there are clients.
    /// @return whether the file is usable; if not, @p problem says why
    bool keepStateIn(const QString &path, QString *problem);

    /// What goes wrong; counts the commands of all clients.
    FaultPlan &faults() { return m_faults; }
    /// Lets the controller take its time for each command.
    void setLatency(int milliseconds) { m_latencyMs = milliseconds; }

    /// Executes a command. What it changed is in the file when this returns, so that nothing that
    /// was answered can be lost; where that fails, the command is refused, though it was executed.
    Outcome execute(ControllerClient &client, const QByteArray &command);

private:
    bool saveChange(QString *problem);

    SimulatedController m_controller;
    FaultPlan m_faults;
    QString m_stateFile;
    int m_latencyMs = 0;
    bool m_isChanged = false;
};
