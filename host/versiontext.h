#pragma once

#include "hostapi/version.h"

#include <QString>

#include <optional>

/// Reads a version of one to three numbers with dots between them, "1.27.0" or "v1.27" for example.
/// Places that are not given are -1; nothing else may follow.
std::optional<Version> versionFromText(const QString &text);

/// The given places with dots between them, "1.27.0" for example.
QString versionText(const Version &version);
