#pragma once

#include "simulator/linechannel.h"

#include <QHash>
#include <QMap>
#include <QPair>
#include <QSet>
#include <QStringList>

#include <functional>

class MessageReceiver;

/// A command channel for tests: records every call in order, answers from a script, fails where it
/// is told to.
///
/// Queries without a scripted answer fail; commands without one succeed, those that begin with
/// "veltra2 " answering "veltra2 ok".
class ScriptedChannel final : public LineChannel
{
public:
    /// Answers @p command with @p text from now on.
    void answer(const QByteArray &command, const QByteArray &text);
    /// Answers @p command with each of @p texts in turn; the last one stays.
    void answerInTurn(const QByteArray &command, const QList<QByteArray> &texts);
    /// Answers the queries of a list refresh: slot k holds the k-th of @p identifiers, none of them
    /// locked, with the owner "owner of ID" and the description "description of ID", both in double
    /// quotes.
    void answerConfigurations(const QList<QByteArray> &identifiers, const QByteArray &active);

    /// Makes @p command fail from now on.
    void fail(const QByteArray &command);
    /// Lets @p command succeed again.
    void succeed(const QByteArray &command);
    /// Makes the n-th command from now fail, counting from 1; setTimeout() and messages do not
    /// count. With @p lasting all later ones fail as well.
    void failNth(int n, bool lasting = false);

    /// Runs @p action while @p command is being executed, before it is answered.
    void whenSent(const QByteArray &command, const std::function<void()> &action);
    /// Runs @p action while the message or event @p text is being posted.
    void whenPosted(const QByteArray &text, const std::function<void()> &action);

    /// Everything called so far, one line each: the operation's name, a blank, then the command or
    /// the arguments separated by blanks.
    QStringList trace() const { return m_trace; }
    /// The trace since the last call of takeTrace() or since the beginning.
    QStringList takeTrace();
    /// How many commands were sent so far.
    int commandCount() const { return m_commandCount; }
    /// The receivers registered now, by name.
    QList<QPair<QByteArray, MessageReceiver *>> receivers() const { return m_receivers; }

    /// The line that an error report leaves in the trace.
    static QString reported(const QString &text);
    /// The line that the global event leaves in the trace.
    static QString announced();

    int setTimeout(int channel, int milliseconds, int flag) override;
    int postMessage(const char *category, const char *source, int level, const char *text) override;
    int addMessageReceiver(const char *name, MessageReceiver *receiver) override;
    int removeMessageReceiver(const char *name, MessageReceiver *receiver) override;

private:
    int transact(Operation operation, const QByteArray &command, QByteArray *answer) override;
    bool isDueToFail() const;

    QStringList m_trace;
    QHash<QByteArray, QList<QByteArray>> m_answers;
    QHash<QByteArray, std::function<void()>> m_actions;     ///< by command
    QHash<QByteArray, std::function<void()>> m_postActions; ///< by text
    QSet<QByteArray> m_failing;
    QList<QPair<QByteArray, MessageReceiver *>> m_receivers;
    int m_commandCount = 0;
    int m_failAt = 0;
    bool m_failureLasts = false;
};
