#pragma once

#include <string>
#include <vector>

/// Measures operations that take turns: one go of each, ours first, then again from the first one
/// on. Whatever else the machine does meets all of them alike, and the ratio of two goes that
/// followed each other says more than their times do.
///
/// Each size becomes a benchmark of its own, called after the first operation. For each operation
/// it tells the median of the times, under the operation's name, and for all but the first the
/// median of the ratios of the first one's time to theirs, under "to " and their name. For
/// initialisers: the result means nothing.
/// @param rounds  how many goes each operation has
bool takeTurns(const std::vector<std::string> &names, const std::vector<int> &sizes, int rounds);
