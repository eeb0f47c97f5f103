#pragma once

#include "tests/support/faultyrun.h"

#include <QByteArray>
#include <QList>
#include <QTest>

#include <stdexcept>

/// A procedure of many commands as the list of the lines it leaves in a channel's trace, and what
/// comes of it when one of its commands fails, alone or with all later ones.
namespace Procedure {

enum class Failure {
    DoesNotMatter,
    Stops,  ///< the procedure fails
    Throws, ///< the same with the connection error
    Special ///< has a test of its own
};

struct Step
{
    QString line;
    Failure failure = Failure::DoesNotMatter;
    int skipped = 0;      ///< so many of the lines that follow are left out after a failure
    QString instead = {}; ///< and this one is there in their place

    bool isCommand() const { return !line.startsWith("setTimeout") && !line.startsWith("post"); }
};

using Steps = QList<Step>;

/// The trace of the procedure when nothing fails.
inline QStringList traceOf(const Steps &steps)
{
    QStringList trace;
    for (const Step &step : steps) {
        trace << step.line;
    }
    return trace;
}

/// Adds the columns "n" and "lasting", of which ScriptedChannel::failNth() wants to know, and two
/// rows for each command.
inline void addFaultRows(const Steps &steps)
{
    QTest::addColumn<int>("n");
    QTest::addColumn<bool>("lasting");
    int n = 0;
    for (const Step &step : steps) {
        n += step.isCommand() ? 1 : 0;
        if (step.isCommand() && step.failure != Failure::Special) {
            QTest::addRow("%s", qPrintable(step.line)) << n << false;
            QTest::addRow("%s and all later ones", qPrintable(step.line)) << n << true;
        }
    }
}

struct Outcome
{
    QStringList trace;
    bool isComplete = true;
    QByteArray thrown = {};
};

/// What has to happen when the n-th command fails, and with @p lasting all later ones.
inline Outcome expectedOutcome(const Steps &steps, int n, bool lasting)
{
    FaultyRun run(n, lasting);
    for (int i = 0; i < steps.size(); ++i) {
        const Step &step = steps.at(i);
        if (!step.isCommand()) {
            run.trace << step.line;
        } else if (!run.succeeds(step.line)) {
            if (!step.instead.isEmpty()) {
                run.trace << step.instead;
            }
            if (step.failure != Failure::DoesNotMatter) {
                return {run.trace, false,
                        step.failure == Failure::Throws ? "connection error" : ""};
            }
            i += step.skipped;
        }
    }
    return {run.trace};
}

/// What @p action throws.
template <typename Action>
QByteArray thrownBy(Action action)
{
    try {
        action();
    } catch (const std::runtime_error &error) {
        return error.what();
    }
    return "";
}

} // namespace Procedure
