#include "simulator/commandtable.h"

#include "simulator/limits.h"

#include <QVector>

#include <utility>

namespace {

constexpr int mostWords = 3;

// The ends of the first words, so that line.left(end) is the line's beginning of one word, of two
// words and so on.
QVector<int> wordEnds(const QByteArray &line)
{
    QVector<int> ends;
    int end = -1;
    while (ends.size() < mostWords && end < line.size()) {
        end = line.indexOf(' ', end + 1);
        if (end < 0) {
            end = line.size();
        }
        ends << end;
    }
    return ends;
}

} // namespace

void CommandTable::add(const char *name, Query query)
{
    m_entries[name].query = std::move(query);
}

void CommandTable::add(const char *name, Command command)
{
    m_entries[name].command = std::move(command);
}

Reply CommandTable::execute(ControllerSession &session, const QByteArray &line) const
{
    if (line.size() > Limits::commandLength || !Limits::isLine(line)) {
        return Reply::refused(QStringLiteral("not a command line"));
    }
    const QVector<int> ends = wordEnds(line);
    for (int words = ends.size(); words > 0; --words) {
        const int end = ends.at(words - 1);
        const auto entry = m_entries.constFind(line.left(end));
        if (entry == m_entries.constEnd()) {
            continue;
        }
        if (end == line.size()) {
            return entry->query ? entry->query(session)
                                : Reply::refused(QStringLiteral("an argument is missing"));
        }
        return entry->command ? entry->command(session, line.mid(end + 1))
                              : Reply::refused(QStringLiteral("takes no argument"));
    }
    return Reply::refused(QStringLiteral("unknown command"));
}

bool CommandTable::mayFit(const QRegularExpression &pattern) const
{
    for (auto entry = m_entries.constBegin(); entry != m_entries.constEnd(); ++entry) {
        const QString name = QString::fromLatin1(entry.key());
        if (entry->query && pattern.match(name).hasMatch()) {
            return true;
        }
        // What fits a beginning partially may be completed by the argument.
        const QRegularExpressionMatch match = pattern.match(
            name + QLatin1Char(' '), 0, QRegularExpression::PartialPreferCompleteMatch);
        if (entry->command && (match.hasMatch() || match.hasPartialMatch())) {
            return true;
        }
    }
    return false;
}
