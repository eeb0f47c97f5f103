#pragma once

#include <cstdio>

class QString;

/// What depends on whether somebody is looking.
namespace Terminal {

/// The colours that the output knows.
enum class Colour {
    Red = 31,   ///< no good, or what was there before
    Green = 32, ///< good, or what is there now
    Yellow = 33 ///< to be looked at
};

/// Whether a person is reading the @p stream as it is written.
bool isTerminal(FILE *stream);

/// The text in that colour, where the @p stream is a terminal and nobody has said NO_COLOR.
QString painted(const QString &text, Colour colour, FILE *stream = stdout);

} // namespace Terminal
