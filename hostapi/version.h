#pragma once

/// A version of up to three places; -1 means that the place is not given.
struct Version
{
    int major = -1;
    int minor = -1;
    int micro = -1;
};
