#pragma once

class QString;

/// The text in one line for a terminal: what is no printable character is written as its number,
/// "\u{1b}" for example, and a text longer than a few lines loses its middle.
QString printable(const QString &text);
