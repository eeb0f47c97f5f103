#include "channel/downloadanswer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

std::optional<DownloadAnswer> parseDownloadAnswer(const char *line)
{
    using Limits = std::numeric_limits<int>;
    char *end = nullptr;
    const long total = std::strtol(line, &end, 10);
    if (end == line) {
        return std::nullopt;
    }
    while (*end == ' ' || (*end >= '\t' && *end <= '\r')) {
        ++end;
    }
    if (*end != '\'') {
        return std::nullopt;
    }
    const char *const text = end + 1;
    if (*text == '\0') {
        return std::nullopt;
    }
    const auto size = static_cast<int>(std::strcspn(text, "'"));
    return DownloadAnswer{static_cast<int>(std::clamp<long>(total, Limits::min(), Limits::max())),
                          QByteArray(text, std::min(size, DownloadAnswer::maxTextSize))};
}
