#pragma once

#include <QByteArray>
#include <QRegularExpression>
#include <QVector>

#include <optional>

/// What goes wrong with one command.
struct Fault
{
    enum class Kind {
        Fail,   ///< the command does not reach the controller and fails
        Answer, ///< the command is executed, but what is answered is `answer`
        Delay   ///< the answer takes `milliseconds` longer
    };

    Kind kind = Kind::Fail;
    QByteArray answer;
    int milliseconds = 0;
};

/// Which commands go wrong, and how. Rules may be given as text:
///
///     RULE     = SELECTOR | SELECTOR "=" ANSWER | SELECTOR "~" MILLISECONDS
///     SELECTOR = N | N "+" | PATTERN | PATTERN "#" N | PATTERN "#" N "+"
///     PATTERN  = a wildcard pattern (* and ?) for the whole command, or /regular expression/
///                found anywhere in it, itself without a slash
///
/// N counts commands from 1, those that fit the pattern if there is one, beginning when the rule is
/// added; "+" means that one and all later ones. A pattern without N takes every command that fits.
/// Without "=" or "~" the command fails; ANSWER is percent-encoded where it has to be ("%FF").
///
///     3                              the third command fails
///     3+                             the third command and all after it fail
///     config desc_of_config *        no description can be read
///     /^system download [0-9]/#7=x   the seventh chunk is garbled
///     /delete_config/#2~25000        the second deletion takes 25 s
///
/// Time-outs and messages do not count. Where several rules take a command, the first one added
/// wins. A rule that no command of the controller can ever fit is refused; of a regular expression
/// that is known only where it begins with "^".
class FaultPlan
{
public:
    /// How rules look, in a few sentences for the help of a program that takes them.
    static QString ruleHelp();

    /// Adds a rule. @return whether @p rule could be read; if not, @p error says why
    bool add(const QString &rule, QString *error);

    /// Makes the n-th command from now, counted from 1, suffer @p fault; with @p lasting all later
    /// ones as well.
    void addNth(int n, const Fault &fault = {}, bool lasting = false);

    /// Makes the commands that fit @p pattern suffer @p fault, from the @p first one on; only that
    /// one unless @p lasting.
    void addMatching(const QRegularExpression &pattern, const Fault &fault = {}, int first = 1,
                     bool lasting = true);

    void clear() { m_rules.clear(); }

    /// Counts @p command and tells what goes wrong with it.
    std::optional<Fault> next(const QByteArray &command);

    /// How many commands went wrong since the beginning.
    int faultCount() const { return m_faultCount; }

private:
    struct Rule
    {
        QRegularExpression pattern; // an empty pattern fits everything
        Fault fault;
        int first = 1;
        bool isLasting = false;
        int matches = 0;
    };

    QVector<Rule> m_rules;
    int m_faultCount = 0;
};
