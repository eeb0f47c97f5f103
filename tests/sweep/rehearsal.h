#pragma once

#include "simulator/simulatedchannel.h"
#include "simulator/simulatedcontroller.h"
#include "tests/sweep/outcome.h"
#include "tests/sweep/transcript.h"

#include <optional>

/// @p query with @p number in two digits behind it.
QByteArray numbered(const char *query, int number);

/// An operation as it has to go by the rules, without the plug-in: on a controller of its own that
/// holds the same and suffers the same faults.
///
/// The commands return false when they failed and their rule says that what they belong to does not
/// go on; what they should have answered is left alone then. A count that no controller can mean
/// counts as a failure, too.
class Rehearsal
{
public:
    /// @p newIdentifiers are those that the plug-in chose for what it created.
    Rehearsal(const Operation &operation, const std::optional<FaultPoint> &faultPoint,
              QByteArrayList newIdentifiers);

    /// Goes by these rules from now on.
    template <std::size_t size>
    void follow(const Rule (&rules)[size])
    {
        m_rules = rules;
        m_ruleCount = size;
    }

    /// @name The commands; @p detail is what a report of the failure names
    /// @{
    bool send(const QByteArray &command, const QString &detail = {});
    bool sendStructural(const QByteArray &command, QByteArray *answer = nullptr,
                        const QString &detail = {});
    bool ask(const QByteArray &command, QByteArray *answer = nullptr);
    bool askCount(const QByteArray &command, int *count);
    /// Asks @p count, and then @p each with the numbers from 1 behind it, until one fails.
    bool askList(const QByteArray &count, const char *each, QByteArrayList *answers);
    bool askNumber(const QByteArray &command);
    bool askTruth(const QByteArray &command, bool *truth);
    /// @}

    /// Posts an error.
    void report(const QString &text) { m_transcript.tell(Transcript::reportLine(text)); }
    /// Tells the host that the configurations have changed.
    void announce() { m_transcript.tell(Transcript::eventLine()); }
    void show(const Box &box, const QString &detail = {}) { m_transcript.boxShown(box, detail); }
    void openWindow(const QString &name) { m_transcript.windowShown(name); }
    /// A wait cursor is to stay.
    void leaveWaitCursor() { ++m_waitCursors; }

    /// The identifier of the next configuration to be created; one that is nobody's if the plug-in
    /// created none.
    QByteArray newIdentifier();

    /// What the user's home directory holds.
    Files files;

    /// What has to be when everything is over.
    Outcome outcome() const;

private:
    /// Counts @p result for @p command and returns whether the procedure goes on.
    bool judge(int result, const QByteArray &command, const QString &detail);
    const Rule &ruleFor(const QByteArray &command) const;

    SimulatedController m_controller;
    SimulatedChannel m_channel;
    Transcript m_transcript;
    QByteArrayList m_newIdentifiers;
    const Rule *m_rules = nullptr;
    std::size_t m_ruleCount = 0;
    int m_waitCursors = 0;
};
