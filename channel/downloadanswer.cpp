#include "channel/downloadanswer.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

constexpr char quote = '\'';

// Not std::isspace(): the answer must not mean something else in another locale.
bool isBlank(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

// Walks along a line; the end of the line shows as NUL.
class Scanner
{
public:
    explicit Scanner(const QByteArray &line)
        : m_next(line.constData())
    {
    }

    void skipBlanks()
    {
        while (isBlank(*m_next)) {
            ++m_next;
        }
    }

    bool take(char expected)
    {
        if (*m_next != expected) {
            return false;
        }
        ++m_next;
        return true;
    }

    std::optional<int> takeNumber()
    {
        using Limits = std::numeric_limits<int>;
        const bool isNegative = take('-');
        if (!isNegative) {
            take('+');
        }
        if (!isDigit(*m_next)) {
            return std::nullopt;
        }
        const std::int64_t beyond = -static_cast<std::int64_t>(Limits::min());
        std::int64_t magnitude = 0;
        for (; isDigit(*m_next); ++m_next) {
            magnitude = std::min(magnitude * 10 + (*m_next - '0'), beyond);
        }
        const std::int64_t number = isNegative ? -magnitude : magnitude;
        return static_cast<int>(std::min<std::int64_t>(number, Limits::max()));
    }

    std::optional<QByteArray> takeText(int maxSize)
    {
        const char *begin = m_next;
        const std::size_t length = strnlen(begin, static_cast<std::size_t>(maxSize));
        const void *closing = std::memchr(begin, quote, length);
        m_next = closing != nullptr ? static_cast<const char *>(closing) : begin + length;
        if (m_next == begin && *m_next != quote) {
            return std::nullopt;
        }
        return QByteArray(begin, static_cast<int>(m_next - begin));
    }

private:
    const char *m_next;
};

} // namespace

std::optional<DownloadAnswer> parseDownloadAnswer(const QByteArray &line)
{
    Scanner scanner(line);
    scanner.skipBlanks();
    const std::optional<int> total = scanner.takeNumber();
    if (!total) {
        return std::nullopt;
    }
    scanner.skipBlanks();
    if (!scanner.take(quote)) {
        return std::nullopt;
    }
    const std::optional<QByteArray> text = scanner.takeText(DownloadAnswer::maxTextSize);
    if (!text) {
        return std::nullopt;
    }
    return DownloadAnswer{*total, *text};
}
