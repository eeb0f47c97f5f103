#include "simulator/faultplan.h"

#include "simulator/commandgroups.h"

#include <QCoreApplication>

namespace {

// What stands before the answer or the delay, and those.
struct RuleText
{
    QString selector;
    QString effect; // beginning with "=" or "~"; empty for a plain failure
};

RuleText splitRule(const QString &rule)
{
    // A regular expression may contain the separators, so look for them behind its end.
    const int from = rule.startsWith(QLatin1Char('/')) ? rule.indexOf(QLatin1Char('/'), 1) : 0;
    const int separator = rule.indexOf(QRegularExpression(QStringLiteral("[=~]")), qMax(from, 0));
    return separator < 0 ? RuleText{rule, {}} : RuleText{rule.left(separator), rule.mid(separator)};
}

bool readFault(const QString &effect, Fault *fault, QString *error)
{
    if (effect.isEmpty()) {
        return true;
    }
    if (effect.startsWith(QLatin1Char('='))) {
        fault->kind = Fault::Kind::Answer;
        fault->answer = QByteArray::fromPercentEncoding(effect.mid(1).toLatin1());
        return true;
    }
    bool ok = false;
    fault->kind = Fault::Kind::Delay;
    fault->milliseconds = effect.midRef(1).toInt(&ok);
    if (!ok || fault->milliseconds < 0) {
        *error = QStringLiteral("\"%1\" is no number of milliseconds").arg(effect.mid(1));
        return false;
    }
    return true;
}

// Not QRegularExpression::wildcardToRegularExpression(): its "*" stops at a slash.
QString fromWildcard(const QString &wildcard)
{
    QString pattern = QRegularExpression::escape(wildcard);
    pattern.replace(QLatin1String("\\*"), QLatin1String(".*"));
    pattern.replace(QLatin1String("\\?"), QLatin1String("."));
    return QRegularExpression::anchoredPattern(pattern);
}

// A regular expression that is looked for anywhere may be found in an argument.
bool mayFit(const QRegularExpression &pattern, bool isWildcard)
{
    static const CommandTable vocabulary = CommandGroups::all();
    const QString text = pattern.pattern();
    const bool isAnchored =
        isWildcard || (text.startsWith(QLatin1Char('^')) && !text.contains(QLatin1Char('|')));
    return !isAnchored || vocabulary.mayFit(pattern);
}

bool readPattern(const QString &text, QRegularExpression *pattern, QString *error)
{
    const bool isWildcard =
        text.size() <= 2 || !text.startsWith(QLatin1Char('/')) || !text.endsWith(QLatin1Char('/'));
    pattern->setPattern(isWildcard ? fromWildcard(text) : text.mid(1, text.size() - 2));
    if (!pattern->isValid()) {
        *error = QStringLiteral("\"%1\" is no pattern: %2").arg(text, pattern->errorString());
    } else if (!mayFit(*pattern, isWildcard)) {
        *error = QStringLiteral("\"%1\" fits no command of the controller").arg(text);
    }
    return error->isEmpty();
}

} // namespace

QString FaultPlan::ruleHelp()
{
    return QCoreApplication::translate(
        "FaultPlan",
        "A rule says which commands: \"3\" the third, \"3+\" all from the third on, \"config *\" "
        "all "
        "that fit the pattern, \"config *#3\" and \"config *#3+\" the third of those and all from "
        "it "
        "on; instead of a pattern with * and ? also /a regular expression/. They fail; with "
        "\"=TEXT\" behind they are answered with TEXT, with \"~MS\" so many milliseconds late.");
}

bool FaultPlan::add(const QString &rule, QString *error)
{
    error->clear();
    const RuleText text = splitRule(rule);
    Rule made;
    if (!readFault(text.effect, &made.fault, error)) {
        return false;
    }
    static const QRegularExpression form(
        QStringLiteral("^(?:(?<pattern>.+)#)?(?<number>[0-9]{1,9})(?<more>\\+?)$"));
    const QRegularExpressionMatch counted = form.match(text.selector);
    made.first = counted.hasMatch() ? counted.capturedRef(QStringLiteral("number")).toInt() : 1;
    made.isLasting = !counted.hasMatch() || counted.capturedLength(QStringLiteral("more")) > 0;
    const QString pattern =
        counted.hasMatch() ? counted.captured(QStringLiteral("pattern")) : text.selector;
    if (made.first < 1 || (pattern.isEmpty() && !counted.hasMatch())) {
        *error = QStringLiteral("\"%1\" selects no command").arg(text.selector);
        return false;
    }
    if (!pattern.isEmpty() && !readPattern(pattern, &made.pattern, error)) {
        return false;
    }
    m_rules.append(made);
    return true;
}

void FaultPlan::addNth(int n, const Fault &fault, bool lasting)
{
    addMatching(QRegularExpression(), fault, n, lasting);
}

void FaultPlan::addMatching(const QRegularExpression &pattern, const Fault &fault, int first,
                            bool lasting)
{
    m_rules.append({pattern, fault, first, lasting, 0});
}

std::optional<Fault> FaultPlan::next(const QByteArray &command)
{
    const QString text = QString::fromLatin1(command);
    std::optional<Fault> fault;
    for (Rule &rule : m_rules) {
        if (!rule.pattern.match(text).hasMatch()) {
            continue;
        }
        ++rule.matches;
        const bool isDue = rule.isLasting ? rule.matches >= rule.first : rule.matches == rule.first;
        if (isDue && !fault) {
            fault = rule.fault;
        }
    }
    m_faultCount += fault ? 1 : 0;
    return fault;
}
