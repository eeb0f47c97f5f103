#include "tool/table.h"

#include "tool/printable.h"

#include <algorithm>

namespace {

constexpr int widestCell = 32; // characters
const QLatin1String gap("  ");

QString shownAs(const QString &cell)
{
    const QString text = cell.isEmpty() ? QStringLiteral("-") : printable(cell);
    return text.size() > widestCell ? text.left(widestCell - 3) + QStringLiteral("...") : text;
}

int widthOf(int column, const QStringList &titles, const QVector<Table::Row> &rows)
{
    int width = titles.at(column).size();
    for (const Table::Row &row : rows) {
        width = std::max(width, shownAs(row.cells.at(column)).size());
    }
    return width;
}

} // namespace

QString Table::text(const QStringList &titles, const QVector<Row> &rows)
{
    const int last = titles.size() - 1;
    QVector<int> widths;
    for (int column = 0; column < last; ++column) {
        widths.append(widthOf(column, titles, rows));
    }
    QString lines;
    for (int column = 0; column < last; ++column) {
        lines += titles.at(column).leftJustified(widths.at(column)) + gap;
    }
    lines += titles.at(last) + QLatin1Char('\n');
    for (const Row &row : rows) {
        for (int column = 0; column < last; ++column) {
            const QString cell = shownAs(row.cells.at(column)).leftJustified(widths.at(column));
            lines += (column == last - 1 ? Terminal::painted(cell, row.colour) : cell) + gap;
        }
        lines += printable(row.cells.at(last)) + QLatin1Char('\n');
    }
    return lines;
}
