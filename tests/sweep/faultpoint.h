#pragma once

#include "simulator/faultplan.h"

/// Where in an operation something goes wrong, and what.
struct FaultPoint
{
    int command = 1; ///< counted from 1, beginning with the operation
    Fault fault;
    bool isLasting = false; ///< whether it befalls all later commands as well
};
