#pragma once

#include <QStringList>
#include <Qt>

class QTableWidget;
class QWidget;

/// A table as a user sees and uses it. Rows go by their description, in the first column.
namespace Table {

/// The only table in @p window.
QTableWidget *in(const QWidget *window);

/// One line for each row: what the shown columns say, with " | " between them; "* " before a bold
/// one.
QStringList lines(const QWidget *window);

/// Clicks a row with the mouse; a description that is not shown ends the test program.
void click(const QWidget *window, const QString &description,
           Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void doubleClick(const QWidget *window, const QString &description);
/// The same by the row's number from the top, for tables whose descriptions may be equal.
void click(const QWidget *window, int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void doubleClick(const QWidget *window, int row);

} // namespace Table
