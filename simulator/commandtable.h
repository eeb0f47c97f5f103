#pragma once

#include "simulator/reply.h"

#include <QByteArray>
#include <QHash>
#include <QRegularExpression>

#include <functional>

class ControllerSession;

/// The command vocabulary: what is done for each command name.
///
/// A name is two or three words; the longest one that a line begins with counts. What follows it
/// after one blank is the argument.
class CommandTable
{
public:
    using Query = std::function<Reply(ControllerSession &)>;
    using Command = std::function<Reply(ControllerSession &, const QByteArray &argument)>;

    /// Adds a name that takes no argument.
    void add(const char *name, Query query);
    /// Adds a name that takes an argument. The same name may be there for both.
    void add(const char *name, Command command);

    Reply execute(ControllerSession &session, const QByteArray &line) const;

    /// Whether there may be a command that @p pattern fits from its beginning on; arguments are any
    /// text.
    bool mayFit(const QRegularExpression &pattern) const;

private:
    struct Entry
    {
        Query query;
        Command command;
    };

    QHash<QByteArray, Entry> m_entries;
};
