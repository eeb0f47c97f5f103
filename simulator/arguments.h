#pragma once

#include <QByteArray>

#include <optional>

/// Readers for what follows a command's name. Each takes the whole text and gives nothing when it
/// is not of its form.
namespace Arguments {

/// A decimal number of at most nine digits, without sign.
std::optional<int> number(const QByteArray &text);

/// @p letter and a number of at least two digits, as "%02d" writes it: "t01", "t99", "t100".
std::optional<int> numbered(char letter, const QByteArray &text);

/// Text between double quotes, without any inside; blanks may follow.
std::optional<QByteArray> doubleQuoted(const QByteArray &text);

/// Text between single quotes, without any inside.
std::optional<QByteArray> singleQuoted(const QByteArray &text);

/// 'config' and an identifier in single quotes; gives the identifier.
std::optional<QByteArray> quotedConfiguration(const QByteArray &text);

} // namespace Arguments
