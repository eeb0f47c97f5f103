#include "simulator/linechannel.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

constexpr int success = 0;
constexpr int notConvertible = -2;

QByteArray formatted(const char *format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (length < 0) {
        return {};
    }
    QByteArray line(length, Qt::Uninitialized);
    std::vsnprintf(line.data(), static_cast<std::size_t>(length) + 1, format, arguments);
    return line;
}

bool toBool(const QByteArray &answer, bool *value)
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
    const QByteArray line = formatted(format, arguments);                                          \
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
    return askText(Operation::SendCommandReply, reply, line);
}

int LineChannel::queryString(char *reply, const char *format, ...)
{
    FORMAT_LINE(format);
    return askText(Operation::QueryString, reply, line);
}

int LineChannel::queryInt(int *value, const char *format, ...)
{
    FORMAT_LINE(format);
    QByteArray answer;
    const int result = transact(Operation::QueryInt, line, &answer);
    if (result != success) {
        return result;
    }
    bool ok = false;
    const int number = answer.trimmed().toInt(&ok);
    if (!ok) {
        return notConvertible;
    }
    *value = number;
    return success;
}

int LineChannel::queryDouble(double *value, const char *format, ...)
{
    FORMAT_LINE(format);
    QByteArray answer;
    const int result = transact(Operation::QueryDouble, line, &answer);
    if (result != success) {
        return result;
    }
    bool ok = false;
    const double number = answer.trimmed().toDouble(&ok);
    if (!ok) {
        return notConvertible;
    }
    *value = number;
    return success;
}

int LineChannel::queryBool(bool *value, const char *format, ...)
{
    FORMAT_LINE(format);
    QByteArray answer;
    const int result = transact(Operation::QueryBool, line, &answer);
    if (result != success) {
        return result;
    }
    return toBool(answer, value) ? success : notConvertible;
}

int LineChannel::sendCommand(const char *format, ...)
{
    FORMAT_LINE(format);
    QByteArray ignored;
    return transact(Operation::SendCommand, line, &ignored);
}

int LineChannel::askText(Operation operation, char *reply, const QByteArray &command)
{
    QByteArray answer;
    const int result = transact(operation, command, &answer);
    if (result != success) {
        return result;
    }
    const int length = std::min(answer.size(), replyCapacity - 1);
    std::memcpy(reply, answer.constData(), static_cast<std::size_t>(length));
    reply[length] = '\0';
    return success;
}
