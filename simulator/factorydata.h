#pragma once

#include <QByteArray>

/// Configuration data as the factory made it: noise that is the same at each call.
namespace FactoryData {

/// @p size bytes that depend on @p seed only.
QByteArray bytes(int size, quint32 seed);

/// What a configuration made with default values holds.
QByteArray defaults();

} // namespace FactoryData
