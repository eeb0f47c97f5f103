#include "tests/sweep/rehearsal.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr int success = 0;
constexpr int mostOfAnything = 10000; // no controller has nearly as many

using Buffer = std::array<char, LineChannel::replyCapacity>;

void keepAnswer(int result, const Buffer &buffer, QByteArray *answer)
{
    if (result == success && answer) {
        *answer = buffer.data();
    }
}

QRegularExpression expressionFor(const char *format)
{
    QString pattern = QRegularExpression::escape(QString::fromLatin1(format));
    pattern.replace(QLatin1String("\\%02d"), QLatin1String("\\d\\d+"));
    pattern.replace(QLatin1String("\\%d"), QLatin1String("\\d+"));
    pattern.replace(QLatin1String("\\%s"), QLatin1String(".*"));
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern));
}

bool fits(const char *format, const QByteArray &command)
{
    static QHash<const char *, QRegularExpression> expressions; // there are thousands of lookups
    auto expression = expressions.find(format);
    if (expression == expressions.end()) {
        expression = expressions.insert(format, expressionFor(format));
    }
    return expression->match(QString::fromLatin1(command)).hasMatch();
}

} // namespace

QByteArray numbered(const char *query, int number)
{
    return query + QByteArray::number(number).rightJustified(2, '0');
}

Rehearsal::Rehearsal(const Operation &operation, const std::optional<FaultPoint> &faultPoint,
                     QByteArrayList newIdentifiers)
    : files(operation.files)
    , m_controller(operation.before)
    , m_channel(m_controller)
    , m_newIdentifiers(std::move(newIdentifiers))
{
    m_channel.setObserver(&m_transcript);
    m_channel.setSleep([](int /*milliseconds*/) {});
    if (faultPoint) {
        m_channel.faults().addNth(faultPoint->command, faultPoint->fault, faultPoint->isLasting);
    }
}

bool Rehearsal::send(const QByteArray &command, const QString &detail)
{
    return judge(m_channel.sendCommand("%s", command.constData()), command, detail);
}

bool Rehearsal::sendStructural(const QByteArray &command, QByteArray *answer, const QString &detail)
{
    Buffer buffer{};
    const int result = m_channel.sendCommandReply(buffer.data(), "%s", command.constData());
    keepAnswer(result, buffer, answer);
    return judge(result, command, detail);
}

bool Rehearsal::ask(const QByteArray &command, QByteArray *answer)
{
    Buffer buffer{};
    const int result = m_channel.queryString(buffer.data(), "%s", command.constData());
    keepAnswer(result, buffer, answer);
    return judge(result, command, {});
}

bool Rehearsal::askCount(const QByteArray &command, int *count)
{
    const int result = m_channel.queryInt(count, "%s", command.constData());
    return judge(*count > mostOfAnything ? -1 : result, command, {});
}

bool Rehearsal::askList(const QByteArray &count, const char *each, QByteArrayList *answers)
{
    int number = 0;
    if (!askCount(count, &number)) {
        return false;
    }
    QByteArray answer;
    while (answers->size() < number && ask(numbered(each, answers->size() + 1), &answer)) {
        *answers << answer;
    }
    return answers->size() >= number;
}

bool Rehearsal::askNumber(const QByteArray &command)
{
    double number = 0;
    return judge(m_channel.queryDouble(&number, "%s", command.constData()), command, {});
}

bool Rehearsal::askTruth(const QByteArray &command, bool *truth)
{
    return judge(m_channel.queryBool(truth, "%s", command.constData()), command, {});
}

QByteArray Rehearsal::newIdentifier()
{
    static const QRegularExpression form("^config\\d{15,17}$");
    const QByteArray identifier =
        m_newIdentifiers.isEmpty() ? QByteArray() : m_newIdentifiers.takeFirst();
    return form.match(QString::fromLatin1(identifier)).hasMatch() ? identifier : "nobodys";
}

Outcome Rehearsal::outcome() const
{
    return {m_transcript.lines(), m_controller.state(), files, m_waitCursors};
}

bool Rehearsal::judge(int result, const QByteArray &command, const QString &detail)
{
    // Looked up also on success: a command that the rules do not know must not be sent.
    const Rule &rule = ruleFor(command);
    if (result == success) {
        return true;
    }
    if (rule.report) {
        report(QString::fromLatin1(rule.report).replace(QLatin1String("%1"), detail));
    }
    if (rule.box.icon != QMessageBox::NoIcon) {
        show(rule.box);
    }
    return rule.then == Then::GoesOn;
}

const Rule &Rehearsal::ruleFor(const QByteArray &command) const
{
    const Rule *end = m_rules + m_ruleCount;
    const Rule *found = std::find_if(
        m_rules, end, [&command](const Rule &rule) { return fits(rule.command, command); });
    if (found == end) {
        qFatal("no rule knows the command '%s'", command.constData());
    }
    return *found;
}
