#include "simulator/commandline.h"

#include <cstdio>

QByteArray commandLine(const char *format, va_list arguments)
{
    va_list again;
    va_copy(again, arguments);
    // The analyser takes the list for uninitialised, as va_start() stands in a macro of the
    // callers. NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (length < 0) {
        return {};
    }
    QByteArray line(length, Qt::Uninitialized);
    std::vsnprintf(line.data(), static_cast<std::size_t>(length) + 1, format, arguments);
    return line;
}
