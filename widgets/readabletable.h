#pragma once

class QString;
class QTableWidget;

/// What keeps tables of texts readable whatever the font and the length of the texts.
namespace ReadableTable {

/// Makes each row of @p table @p rowHeight pixels high, or higher where the font needs it, shortens
/// titles that are wider than their columns visibly, and tells the whole of a text that is wider
/// than its column in a tool tip.
void prepare(QTableWidget *table, int rowHeight);

/// @p text as a tool tip that breaks its lines and is never taken for markup, whatever the
/// controller has sent; none for an empty one.
QString toolTip(const QString &text);

} // namespace ReadableTable
