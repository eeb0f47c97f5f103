#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <cstring>

/// The caller's side of a textual answer: starts empty, keeps its text when a query fails.
///
/// Answers are short lines; the channel writes at most 200 bytes. The rest is reserve against a
/// host that writes a little more than it promised.
class ReplyBuffer
{
public:
    static constexpr int capacity = 256; ///< bytes, the terminating NUL included

    /// Where the channel may write.
    char *data() { return m_bytes.data(); }

    /// The answer as it came.
    QByteArray bytes() const { return {m_bytes.data(), length()}; }

    /// The answer, every byte taken as Latin-1, so that it can be sent back unchanged.
    QString text() const { return QString::fromLatin1(m_bytes.data(), length()); }

    /// The answer decoded as UTF-8, as it goes into a backup document.
    QString utf8Text() const { return QString::fromUtf8(m_bytes.data(), length()); }

private:
    int length() const { return static_cast<int>(strnlen(m_bytes.data(), capacity)); }

    std::array<char, capacity + 1> m_bytes{}; // the last one stays NUL
};
