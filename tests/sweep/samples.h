#pragma once

#include "simulator/controllerstate.h"

/// Controllers that are small enough for thousands of operations, and still have several chunks in
/// each transfer.
namespace Samples {

/// Four of the sample's configurations: the standard one, the active one, the locked one and the
/// fair's, in this order.
ControllerState small();

/// The same with nothing locked.
ControllerState unlocked();

/// The same with the locked one active.
ControllerState lockedActive();

} // namespace Samples
