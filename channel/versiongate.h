#pragma once

#include "hostapi/version.h"

/// Tells which features the controller's command interface offers.
namespace VersionGate {

/// True if @p version is at least 1.@p minor. A micro place that is not given passes.
inline bool isAtLeastOneDot(int minor, const Version &version)
{
    if (version.major != 1) {
        return version.major > 1;
    }
    if (version.minor != minor) {
        return version.minor > minor;
    }
    // Only "not given" and real numbers pass; other negative values are no version at all.
    return version.micro >= -1;
}

/// Configurations can be locked with a password.
inline bool hasLocks(const Version &version)
{
    return isAtLeastOneDot(9, version);
}

/// Configurations and backups can be transferred.
inline bool hasTransfers(const Version &version)
{
    return isAtLeastOneDot(11, version);
}

/// The base configuration can be imported.
inline bool importsBaseItem(const Version &version)
{
    return isAtLeastOneDot(17, version);
}

/// The fill of the configuration store can be asked for.
inline bool reportsFreeSpace(const Version &version)
{
    return isAtLeastOneDot(27, version);
}

} // namespace VersionGate
