#include "simulator/arguments.h"

#include <algorithm>

namespace {

constexpr int mostDigits = 9; // always fits an int

std::optional<QByteArray> quoted(char quote, const QByteArray &text)
{
    const bool isQuoted = text.size() >= 2 && text.startsWith(quote) && text.endsWith(quote);
    const QByteArray content = isQuoted ? text.mid(1, text.size() - 2) : QByteArray();
    if (!isQuoted || content.contains(quote)) {
        return {};
    }
    return content;
}

QByteArray withoutTrailingBlanks(QByteArray text)
{
    while (text.endsWith(' ')) {
        text.chop(1);
    }
    return text;
}

} // namespace

std::optional<int> Arguments::number(const QByteArray &text)
{
    const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
    if (text.isEmpty() || text.size() > mostDigits
        || !std::all_of(text.begin(), text.end(), isDigit)) {
        return {};
    }
    return text.toInt();
}

std::optional<int> Arguments::numbered(char letter, const QByteArray &text)
{
    const std::optional<int> value = number(text.mid(1));
    const bool isCanonical = value && text.startsWith(letter)
        && text.mid(1) == QByteArray::number(*value).rightJustified(2, '0');
    return isCanonical ? value : std::nullopt;
}

std::optional<QByteArray> Arguments::doubleQuoted(const QByteArray &text)
{
    return quoted('"', withoutTrailingBlanks(text));
}

std::optional<QByteArray> Arguments::singleQuoted(const QByteArray &text)
{
    return quoted('\'', text);
}

std::optional<QByteArray> Arguments::quotedConfiguration(const QByteArray &text)
{
    const QByteArray kind = "'config' ";
    return text.startsWith(kind) ? singleQuoted(text.mid(kind.size())) : std::nullopt;
}
