#pragma once

#include <QString>

/// The controller answers owners and descriptions in double quotes, and they go back to it inside
/// double quotes: no text of the plug-in ever keeps one.
inline QString withoutDoubleQuotes(QString text)
{
    return text.remove(QLatin1Char('"'));
}
