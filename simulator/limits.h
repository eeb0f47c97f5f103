#pragma once

#include <QByteArray>

/// What the controller accepts as names and texts.
namespace Limits {

inline constexpr int identifierLength = 64;
inline constexpr int textLength = 100; ///< owners, descriptions, passwords, settings
inline constexpr int commandLength = 1000;

/// A line of text in any 8-bit encoding: no control characters.
bool isLine(const QByteArray &text);

/// 1 to 64 printable ASCII characters without blanks and quotes.
bool isIdentifier(const QByteArray &text);

/// A line of at most 100 bytes.
bool isText(const QByteArray &text);

} // namespace Limits
