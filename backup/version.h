#pragma once

#include "hostapi/version.h"

class QString;

/// Reads a version such as "v1.17" or "V2.4.1-beta", whose trailing words are ignored.
///
/// A place that is missing is -1; one that is no number is 0 and ends the reading. Places beyond
/// the third are ignored.
/// @param text  as the controller or a document states it
/// @param ok  if given, tells whether the last place that was read is a number
Version parseVersion(const QString &text, bool *ok = nullptr);

/// "v" and the places that are given, "v4.2" for example; empty if not even the major place is.
QString versionToString(const Version &version);

/// Compares place by place. A place that is not given is -1 and so comes before any given one.
bool operator<(const Version &left, const Version &right);
bool operator==(const Version &left, const Version &right);
