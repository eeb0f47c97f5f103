#pragma once

/// How far an answer that counts something is believed: slots, slaves, items.
///
/// No controller has nearly as many of anything; a larger number is no count but a garbled answer,
/// and whoever took it for one would ask until the end of days.
inline constexpr int maxAnsweredCount = 10000;

/// Whether @p count can be one. Numbers below zero can: they count nothing.
inline bool isBelievable(int count)
{
    return count <= maxAnsweredCount;
}
