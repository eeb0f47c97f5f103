#pragma once

#include <QString>

#include <optional>

/// Where a controller is found in a network.
struct HostPort
{
    QString host;     ///< a name or an address; an IPv6 address without brackets
    quint16 port = 0; ///< not 0

    /// Reads "controller.example:4711", "192.168.40.17:4711" or "[::1]:4711".
    /// @return nothing if @p text is of another form
    static std::optional<HostPort> fromText(const QString &text);

    /// As fromText() reads it.
    QString toText() const;
};
