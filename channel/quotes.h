#pragma once

#include <QString>

/// The controller answers owners and descriptions in double quotes, and they go back to it inside
/// double quotes: what is listed, edited or sent holds none of its own.
inline QString withoutDoubleQuotes(QString text)
{
    return text.remove(QLatin1Char('"'));
}
