#pragma once

#include <QString>

class QTableWidget;
class QTableWidgetItem;

/// What keeps tables of texts readable whatever the font and the length of the texts.
namespace ReadableTable {

/// Makes each row of @p table @p rowHeight pixels high, or higher where the font needs it, and
/// shortens titles that are wider than their columns visibly.
void prepare(QTableWidget *table, int rowHeight);

/// A cell that tells the whole of its text in a tool tip, for when the column is too narrow.
/// To be owned by the table that it is put into.
QTableWidgetItem *cell(const QString &text);

} // namespace ReadableTable
