#include "tests/support/scriptedchannel.h"

namespace {

constexpr int success = 0;
constexpr int failure = 1;

QString line(const char *operation, const QByteArray &rest)
{
    return QString::fromLatin1(operation) + QLatin1Char(' ') + QString::fromLatin1(rest);
}

} // namespace

void ScriptedChannel::answer(const QByteArray &command, const QByteArray &text)
{
    answerInTurn(command, {text});
}

void ScriptedChannel::answerInTurn(const QByteArray &command, const QList<QByteArray> &texts)
{
    m_answers.insert(command, texts);
}

void ScriptedChannel::answerConfigurations(const QList<QByteArray> &identifiers,
                                           const QByteArray &active)
{
    answer("config number_of_configs", QByteArray::number(identifiers.size()));
    answer("config active_config", active);
    for (int i = 0; i < identifiers.size(); ++i) {
        const QByteArray &id = identifiers.at(i);
        answer("config config t" + QByteArray::number(i + 1).rightJustified(2, '0'), id);
        answer("config owner_of_config " + id, "\"owner of " + id + '"');
        answer("config desc_of_config " + id, "\"description of " + id + '"');
        answer("config config_has_password " + id, "no");
    }
}

void ScriptedChannel::fail(const QByteArray &command)
{
    m_failing.insert(command);
}

void ScriptedChannel::succeed(const QByteArray &command)
{
    m_failing.remove(command);
}

void ScriptedChannel::failNth(int n, bool lasting)
{
    m_failAt = m_commandCount + n;
    m_failureLasts = lasting;
}

void ScriptedChannel::whenSent(const QByteArray &command, const std::function<void()> &action)
{
    m_actions.insert(command, action);
}

void ScriptedChannel::whenPosted(const QByteArray &text, const std::function<void()> &action)
{
    m_postActions.insert(text, action);
}

QStringList ScriptedChannel::takeTrace()
{
    QStringList taken;
    taken.swap(m_trace);
    return taken;
}

QString ScriptedChannel::reported(const QString &text)
{
    return QStringLiteral("postMessage standard VELTRA4 1 ") + text;
}

QString ScriptedChannel::announced()
{
    return QStringLiteral(
        "postMessage GlobalEvent ConfigurationModule 1 ActiveConfigurationChanged");
}

int ScriptedChannel::setTimeout(int channel, int milliseconds, int flag)
{
    m_trace << QStringLiteral("setTimeout %1 %2 %3").arg(channel).arg(milliseconds).arg(flag);
    return success;
}

int ScriptedChannel::postMessage(const char *category, const char *source, int level,
                                 const char *text)
{
    m_trace << line("postMessage",
                    QByteArray(category) + ' ' + source + ' ' + QByteArray::number(level) + ' '
                        + text);
    if (const auto action = m_postActions.value(text)) {
        action();
    }
    return success;
}

int ScriptedChannel::addMessageReceiver(const char *name, MessageReceiver *receiver)
{
    m_trace << line("addMessageReceiver", name);
    m_receivers.append({name, receiver});
    return success;
}

int ScriptedChannel::removeMessageReceiver(const char *name, MessageReceiver *receiver)
{
    m_trace << line("removeMessageReceiver", name);
    for (int i = m_receivers.size() - 1; i >= 0; --i) {
        if (m_receivers.at(i).second == receiver) {
            m_receivers.removeAt(i);
        }
    }
    return success;
}

int ScriptedChannel::transact(Operation operation, const QByteArray &command, QByteArray *answer)
{
    ++m_commandCount;
    m_trace << line(nameOf(operation), command);
    if (const auto action = m_actions.value(command)) {
        action();
    }
    if (isDueToFail() || m_failing.contains(command)) {
        return failure;
    }
    const auto scripted = m_answers.find(command);
    if (scripted != m_answers.end()) {
        *answer = scripted->size() > 1 ? scripted->takeFirst() : scripted->first();
        return success;
    }
    if (operation == Operation::SendCommandReply) {
        *answer = "veltra2 ok";
        return success;
    }
    return operation == Operation::SendCommand ? success : failure;
}

bool ScriptedChannel::isDueToFail() const
{
    return m_failAt > 0
        && (m_failureLasts ? m_commandCount >= m_failAt : m_commandCount == m_failAt);
}
