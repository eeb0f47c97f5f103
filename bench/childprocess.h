#pragma once

#include <QByteArray>
#include <QStringList>

/// Programs that are measured from outside.
namespace ChildProcess {

/// What a program that has ended left behind.
struct Outcome
{
    bool isSuccess = false;
    double cpuTime = 0; ///< seconds of processor time, the system's included
    QByteArray output;
};

/// Runs @p program to its end.
Outcome run(const QString &program, const QStringList &arguments);

/// Runs one of the programs that are built along with this one.
Outcome runProbe(const QString &name, const QStringList &arguments);

} // namespace ChildProcess
