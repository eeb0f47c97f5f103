#pragma once

#include <optional>

/// How far an answer that counts something is believed: slots, slaves, items.
///
/// No controller has nearly as many of anything; a larger number is no count but a garbled answer,
/// and whoever took it for one would ask until the end of days.
inline constexpr int maxAnsweredCount = 10000;

/// @p answer, unless it is not believed. Numbers below zero are: they count nothing.
inline std::optional<int> believedCount(const std::optional<int> &answer)
{
    return answer && *answer <= maxAnsweredCount ? answer : std::nullopt;
}
