#include "tests/endtoend/table.h"

#include <QTableWidget>
#include <QTest>

namespace {

constexpr int descriptionColumn = 0;

int rowOf(const QTableWidget *table, const QString &description)
{
    for (int row = 0; row < table->rowCount(); ++row) {
        if (table->item(row, descriptionColumn)->text() == description) {
            return row;
        }
    }
    qFatal("no row says '%s'", qPrintable(description));
}

// Where the row is on the screen; it is scrolled there.
QPoint placeOf(QTableWidget *table, int row)
{
    const QTableWidgetItem *item = table->item(row, descriptionColumn);
    if (!item) {
        qFatal("there is no row %d", row);
    }
    table->scrollToItem(item);
    return table->visualItemRect(item).center();
}

} // namespace

QTableWidget *Table::in(const QWidget *window)
{
    const auto tables =
        window->findChildren<QTableWidget *>(QString(), Qt::FindChildrenRecursively);
    for (QTableWidget *table : tables) {
        if (table->window() == window) {
            return table;
        }
    }
    qFatal("'%s' has no table", qPrintable(window->objectName()));
}

QStringList Table::lines(const QWidget *window)
{
    const QTableWidget *table = in(window);
    QStringList lines;
    for (int row = 0; row < table->rowCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < table->columnCount(); ++column) {
            if (!table->isColumnHidden(column)) {
                texts << table->item(row, column)->text();
            }
        }
        const bool isBold = table->item(row, descriptionColumn)->font().bold();
        lines << (isBold ? QStringLiteral("* ") : QString()) + texts.join(QStringLiteral(" | "));
    }
    return lines;
}

void Table::click(const QWidget *window, const QString &description,
                  Qt::KeyboardModifiers modifiers)
{
    click(window, rowOf(in(window), description), modifiers);
}

void Table::doubleClick(const QWidget *window, const QString &description)
{
    doubleClick(window, rowOf(in(window), description));
}

void Table::click(const QWidget *window, int row, Qt::KeyboardModifiers modifiers)
{
    QTableWidget *table = in(window);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, modifiers, placeOf(table, row));
}

void Table::doubleClick(const QWidget *window, int row)
{
    QTableWidget *table = in(window);
    const QPoint place = placeOf(table, row);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, place);
}
