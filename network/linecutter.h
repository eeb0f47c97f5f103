#pragma once

#include <QByteArray>

#include <optional>

/// Cuts a stream of bytes into the lines of the wire protocol.
class LineCutter
{
public:
    /// Adds what has arrived.
    void add(const QByteArray &bytes) { m_bytes += bytes; }

    /// Takes the next line, without its end; nothing if there is no whole one yet or the next one
    /// is overlong.
    std::optional<QByteArray> next();

    /// Whether the next line is longer than the protocol allows. There is no going on then.
    bool isOverlong() const;
    /// Whether there is the beginning of a line.
    bool hasBegun() const { return !m_bytes.isEmpty(); }

private:
    QByteArray m_bytes;
};
