#pragma once

#include "network/hostport.h"

#include <QProcess>
#include <QTemporaryDir>

struct ControllerState;

/// A simulated controller in a process of its own, with a state file, to which anything can happen.
class ServerProcess
{
public:
    /// Serves @p state when this returns.
    explicit ServerProcess(const ControllerState &state, const QStringList &options = {});
    ~ServerProcess();

    HostPort address() const { return m_address; }
    /// What the state file holds. Fails the test if it is not whole.
    ControllerState state() const;

    void kill();
    /// Ends where it is, without giving it a chance to do anything, until it is resumed.
    void stop();
    void resume();
    /// After kill(): serves the state file's state at the same address when this returns.
    void restart(const QStringList &options = {});

private:
    QString stateFile() const { return m_folder.filePath("state.json"); }
    void start(quint16 port, const QStringList &options);
    void signal(int number) const;

    QTemporaryDir m_folder;
    QProcess m_process;
    HostPort m_address;
};

/// The path of the program.
QString serverProgram();
