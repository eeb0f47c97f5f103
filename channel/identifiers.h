#pragma once

#include <QString>

/// Identifiers of configurations: ASCII words that name one configuration on the controller.
namespace Identifiers {

/// The controller's own configuration; it can never be deleted.
inline constexpr char standard[] = "standard";

/// The controller's base configuration in transfers.
inline constexpr char base[] = "__base";

/// The stamp of a new identifier: the current local time as "yyyyMMddHHmmss", followed by its
/// milliseconds without leading zeros. Never the same twice in a run: waits for the next
/// millisecond where needed.
QString newStamp();

/// A new identifier: "config" followed by newStamp().
inline QString newIdentifier()
{
    return QStringLiteral("config") + newStamp();
}

} // namespace Identifiers
