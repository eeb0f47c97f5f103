#pragma once

/// A version of up to three places; -1 means that the place is not given.
struct Version
{
    int major = -1; ///< the first place
    int minor = -1; ///< the second
    int micro = -1; ///< the third
};
