#include "channel/downloadanswer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

std::optional<DownloadAnswer> parseDownloadAnswer(const QByteArray &line)
{
    using Limits = std::numeric_limits<int>;
    const char *const begin = line.constData();
    char *end = nullptr;
    const long total = std::strtol(begin, &end, 10);
    if (end == begin) {
        return std::nullopt;
    }
    end += std::strspn(end, " \t\n\v\f\r");
    if (*end != '\'') {
        return std::nullopt;
    }
    const char *const text = end + 1;
    const auto size = static_cast<int>(std::strcspn(text, "'"));
    if (*text == '\0') {
        return std::nullopt;
    }
    return DownloadAnswer{static_cast<int>(std::clamp<long>(total, Limits::min(), Limits::max())),
                          QByteArray(text, std::min(size, DownloadAnswer::maxTextSize))};
}
