#include "tool/terminal.h"

#include <QString>

#include <unistd.h>

namespace {

bool hasColours(FILE *stream)
{
    return qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb"
        && Terminal::isTerminal(stream);
}

} // namespace

bool Terminal::isTerminal(FILE *stream)
{
    return isatty(fileno(stream)) == 1;
}

QString Terminal::painted(const QString &text, Colour colour, FILE *stream)
{
    return hasColours(stream)
        ? QStringLiteral("\x1b[%1m%2\x1b[m").arg(static_cast<int>(colour)).arg(text)
        : text;
}
