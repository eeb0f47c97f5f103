#include "simulator/linechannel.h"

#include "simulator/channelobserver.h"
#include "simulator/commandline.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstring>

namespace {

constexpr int notConvertible = -2;

bool takeText(const QByteArray &answer, char *reply)
{
    const int length = std::min(answer.size(), LineChannel::replyCapacity - 1);
    std::memcpy(reply, answer.constData(), static_cast<std::size_t>(length));
    reply[length] = '\0';
    return true;
}

bool takeInt(const QByteArray &answer, int *value)
{
    bool ok = false;
    const int number = answer.trimmed().toInt(&ok);
    if (ok) {
        *value = number;
    }
    return ok;
}

bool takeDouble(const QByteArray &answer, double *value)
{
    bool ok = false;
    const double number = answer.trimmed().toDouble(&ok);
    if (ok) {
        *value = number;
    }
    return ok;
}

bool takeBool(const QByteArray &answer, bool *value)
{
    const QByteArray word = answer.trimmed().toLower();
    const bool isTrue = word == "yes" || word == "true" || word == "1";
    const bool isFalse = word == "no" || word == "false" || word == "0";
    if (isTrue || isFalse) {
        *value = isTrue;
    }
    return isTrue || isFalse;
}

} // namespace

// Formats the variable arguments of the surrounding function into the constant `line`.
#define FORMAT_LINE(format)                                                                        \
    va_list arguments;                                                                             \
    va_start(arguments, format);                                                                   \
    const QByteArray line = commandLine(format, arguments);                                        \
    va_end(arguments)

const char *LineChannel::nameOf(Operation operation)
{
    switch (operation) {
    case Operation::SendCommandReply:
        return "sendCommandReply";
    case Operation::QueryString:
        return "queryString";
    case Operation::QueryInt:
        return "queryInt";
    case Operation::QueryDouble:
        return "queryDouble";
    case Operation::QueryBool:
        return "queryBool";
    case Operation::SendCommand:
        return "sendCommand";
    }
    return "";
}

int LineChannel::sendCommandReply(char *reply, const char *format, ...)
{
    FORMAT_LINE(format);
    return exchange(Operation::SendCommandReply, format, line,
                    [reply](const QByteArray &answer) { return takeText(answer, reply); });
}

int LineChannel::queryString(char *reply, const char *format, ...)
{
    FORMAT_LINE(format);
    return exchange(Operation::QueryString, format, line,
                    [reply](const QByteArray &answer) { return takeText(answer, reply); });
}

int LineChannel::queryInt(int *value, const char *format, ...)
{
    FORMAT_LINE(format);
    return exchange(Operation::QueryInt, format, line,
                    [value](const QByteArray &answer) { return takeInt(answer, value); });
}

int LineChannel::queryDouble(double *value, const char *format, ...)
{
    FORMAT_LINE(format);
    return exchange(Operation::QueryDouble, format, line,
                    [value](const QByteArray &answer) { return takeDouble(answer, value); });
}

int LineChannel::queryBool(bool *value, const char *format, ...)
{
    FORMAT_LINE(format);
    return exchange(Operation::QueryBool, format, line,
                    [value](const QByteArray &answer) { return takeBool(answer, value); });
}

int LineChannel::sendCommand(const char *format, ...)
{
    FORMAT_LINE(format);
    return exchange(Operation::SendCommand, format, line, [](const QByteArray &) { return true; });
}

template <typename Take>
int LineChannel::exchange(Operation operation, const char *format, const QByteArray &command,
                          Take take)
{
    QElapsedTimer timer;
    timer.start();
    Exchange exchange;
    exchange.operation = operation;
    exchange.format = format;
    exchange.command = command;
    exchange.result = transact(operation, command, &exchange.answer);
    if (exchange.result != success) {
        exchange.failureReason = failureReason();
    } else if (!take(exchange.answer)) {
        exchange.result = notConvertible;
        exchange.failureReason = QStringLiteral("the answer is not of the kind asked for");
    }
    exchange.microseconds = timer.nsecsElapsed() / 1000;
    if (m_observer != nullptr) {
        m_observer->exchanged(exchange);
    }
    return exchange.result;
}
