#pragma once

class QTableWidget;

/// How many items of @p table are selected: the size of its selectedItems(), without making that
/// list. Long tables count at every change of the selection.
int selectedCellCount(const QTableWidget *table);
