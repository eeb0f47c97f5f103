#pragma once

#include "tool/terminal.h"

#include <QStringList>
#include <QVector>

/// Rows of short texts, for people.
namespace Table {

/// One of them.
struct Row
{
    QStringList cells;       ///< as many as there are titles; an empty one is shown as "-"
    Terminal::Colour colour; ///< of the last cell but one, the verdict
};

/// A line for each row, below one with the titles. Every column is as wide as it has to be, and
/// none is wider than a reader bears, but for the last one, which may be as long as it likes.
QString text(const QStringList &titles, const QVector<Row> &rows);

} // namespace Table
