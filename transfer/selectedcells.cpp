#include "transfer/selectedcells.h"

#include <QItemSelectionModel>
#include <QTableWidget>

namespace {

bool isSelectable(const QTableWidgetItem *item)
{
    constexpr Qt::ItemFlags needed = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    return (item->flags() & needed) == needed;
}

// Of those columns of a row that a range of the selection covers.
int cellsOfRow(const QTableWidget *table, int row, const QItemSelectionRange &range)
{
    int count = 0;
    for (int column = range.left(); column <= range.right(); ++column) {
        const QTableWidgetItem *item = table->item(row, column);
        if (item != nullptr && isSelectable(item) && !table->isColumnHidden(column)) {
            ++count;
        }
    }
    return count;
}

} // namespace

int selectedCellCount(const QTableWidget *table)
{
    int count = 0;
    const QItemSelection selection = table->selectionModel()->selection();
    for (const QItemSelectionRange &range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            count += cellsOfRow(table, row, range);
        }
    }
    return count;
}
