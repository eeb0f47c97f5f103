#pragma once

#include "host/controllerlink.h"
#include "simulator/simulatedchannel.h"
#include "simulator/simulatedcontroller.h"

#include <QTimer>

/// A connection to a simulated controller in this process, which can keep its state in a file.
///
/// The file is written whenever the event loop runs after a change, and in the end. Problems with
/// that go to the debug log only.
class SimulatedLink final : public ControllerLink
{
public:
    SimulatedLink();
    ~SimulatedLink() override;
    Q_DISABLE_COPY_MOVE(SimulatedLink)

    /// Keeps the state in @p path from now on, beginning with what is in there; a missing file
    /// will be created.
    /// @return whether the file is usable; if not, @p problem says why
    bool keepStateIn(const QString &path, QString *problem);

    /// What goes wrong with the commands of the modules.
    FaultPlan &faults() { return m_moduleChannel.faults(); }

    /// Lets the controller take its time for each command of the modules.
    void setLatency(int milliseconds);

    SimulatedController &controller() { return m_controller; }

    LineChannel &moduleChannel() override { return m_moduleChannel; }
    IOManager &hostChannel() override { return m_hostChannel; }
    void deliverMessage(int id, const QString &source, const QString &text) override;
    QString description() const override;

private:
    void saveState();

    SimulatedController m_controller;
    SimulatedChannel m_moduleChannel;
    SimulatedChannel m_hostChannel;
    QString m_stateFile;
    QTimer m_saveTimer;
};
