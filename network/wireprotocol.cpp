#include "network/wireprotocol.h"

#include "simulator/arguments.h"
#include "simulator/limits.h"

#include <cctype>

namespace {

constexpr int longestReason = 500; // characters, each of which may take three bytes of the line

bool isEscaped(char character)
{
    return character == '%' || std::iscntrl(static_cast<unsigned char>(character)) != 0;
}

QByteArray escaped(const QByteArray &text)
{
    QByteArray line;
    for (const char character : text) {
        if (isEscaped(character)) {
            line += '%' + QByteArray(1, character).toHex().toUpper();
        } else {
            line += character;
        }
    }
    return line;
}

bool isHexDigit(char character)
{
    return std::isxdigit(static_cast<unsigned char>(character)) != 0;
}

// Qt's own reader takes anything for an escape.
bool isWellEscaped(const QByteArray &text)
{
    for (int at = text.indexOf('%'); at >= 0; at = text.indexOf('%', at + 1)) {
        if (at + 2 >= text.size() || !isHexDigit(text.at(at + 1)) || !isHexDigit(text.at(at + 2))) {
            return false;
        }
    }
    return Limits::isLine(text);
}

struct Numbered
{
    int id = 0;
    QByteArray text; // still escaped
};

std::optional<Numbered> readNumbered(const QByteArray &line)
{
    const int blank = line.indexOf(' ');
    const std::optional<int> id = Arguments::number(line.left(blank));
    if (blank < 0 || !id || !isWellEscaped(line)) {
        return {};
    }
    return Numbered{*id, line.mid(blank + 1)};
}

} // namespace

QByteArray WireProtocol::lineOf(const Request &request)
{
    return QByteArray::number(request.id) + ' ' + escaped(request.command) + '\n';
}

QByteArray WireProtocol::lineOf(const Answer &answer)
{
    const QByteArray id = QByteArray::number(answer.id);
    const Reply &reply = answer.reply;
    if (!reply.ok) {
        return id + " error " + escaped(reply.reason.left(longestReason).toLatin1()) + '\n';
    }
    return id + (reply.text.isEmpty() ? " ok" : " ok " + escaped(reply.text)) + '\n';
}

std::optional<WireProtocol::Request> WireProtocol::readRequest(const QByteArray &line)
{
    const std::optional<Numbered> numbered = readNumbered(line);
    if (!numbered || numbered->id == noRequest) {
        return {};
    }
    return Request{numbered->id, QByteArray::fromPercentEncoding(numbered->text)};
}

std::optional<WireProtocol::Answer> WireProtocol::readAnswer(const QByteArray &line)
{
    const std::optional<Numbered> numbered = readNumbered(line);
    if (!numbered) {
        return {};
    }
    const int blank = numbered->text.indexOf(' ');
    const bool isBare = blank < 0;
    const QByteArray word = isBare ? numbered->text : numbered->text.left(blank);
    const QByteArray text =
        isBare ? QByteArray() : QByteArray::fromPercentEncoding(numbered->text.mid(blank + 1));
    if (word == "ok") {
        return Answer{numbered->id, Reply{true, text, {}}};
    }
    if (word == "error") {
        return Answer{numbered->id, Reply::refused(QString::fromLatin1(text))};
    }
    return {};
}
