#pragma once

#include <QtGlobal>

#include <optional>

class QDateTime;
class QString;

/// The age of a backup.
namespace Age {

/// Reads "30m", "12h", "2d" or "1w".
/// @return seconds; nothing if the text is something else
std::optional<qint64> parse(const QString &text);

/// Whether somebody who reads @p now would take the backup for that young, @p limit being seconds.
///
/// Documents tell the local time without its zone, and clocks differ: up to a day in the future is
/// young. What is later than that tells of a clock that was wrong, and counts as of no known age.
bool isYounger(const QDateTime &made, qint64 limit, const QDateTime &now);

} // namespace Age
