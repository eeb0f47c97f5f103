#pragma once

#include <QStringList>

/// What has to pass a channel in a run in which the n-th command fails, alone or with all later
/// ones: the counterpart of ScriptedChannel::failNth(). The rules of an operation derive from it
/// and carry the operation out command by command.
class FaultyRun
{
public:
    /// With @p failingCommand 0 none fails.
    FaultyRun(int failingCommand, bool laterOnesFail)
        : m_failAt(failingCommand)
        , m_lasting(laterOnesFail)
    {
    }

    /// Notes a command, written as ScriptedChannel::trace() does. @return whether it succeeds
    bool succeeds(const QString &command)
    {
        trace << command;
        ++m_sent;
        const bool fails = m_failAt > 0 && (m_lasting ? m_sent >= m_failAt : m_sent == m_failAt);
        isFaultMet = isFaultMet || fails;
        return !fails;
    }

    QStringList trace; ///< commands, and what the rules add in between
    bool isFaultMet = false;

private:
    int m_failAt;
    bool m_lasting;
    int m_sent = 0;
};
