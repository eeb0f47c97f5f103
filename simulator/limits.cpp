#include "simulator/limits.h"

#include <algorithm>

bool Limits::isLine(const QByteArray &text)
{
    return std::none_of(text.begin(), text.end(), [](char character) {
        const auto code = static_cast<unsigned char>(character);
        return code < 0x20 || code == 0x7f;
    });
}

bool Limits::isIdentifier(const QByteArray &text)
{
    const auto isAllowed = [](char character) {
        return character > ' ' && character <= '~' && character != '\'' && character != '"';
    };
    return !text.isEmpty() && text.size() <= identifierLength
        && std::all_of(text.begin(), text.end(), isAllowed);
}

bool Limits::isText(const QByteArray &text)
{
    return text.size() <= textLength && isLine(text);
}
