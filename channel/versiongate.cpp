#include "channel/versiongate.h"

bool VersionGate::isAtLeastOneDot(int minor, const Version &version)
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
