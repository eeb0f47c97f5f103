#pragma once

#include "simulator/reply.h"

/// The refusals that several groups of commands give.
namespace Refusals {

Reply noActiveConfiguration();
Reply unknownConfiguration(const QByteArray &identifier);
Reply lockedConfiguration(const QByteArray &identifier);
Reply fullStore();
Reply wrongArgument();

} // namespace Refusals
