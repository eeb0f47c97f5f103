#include "tests/model/listpicture.h"

#include "tests/endtoend/table.h"
#include "tests/support/userinput.h"

#include <QDialog>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

#include <algorithm>

namespace {

enum Column { DescriptionColumn, OwnerColumn, IdentifierColumn, LockedColumn };

constexpr int iconSize = 16; // pixels

QImage imageOf(const QIcon &icon)
{
    return icon.pixmap(iconSize).toImage();
}

QString lockStateIn(const QTableWidgetItem *item)
{
    static const QImage locked = imageOf(QIcon(":/lock.png"));
    static const QImage unlocked = imageOf(QIcon(":/unlock.png"));
    const bool isRight = imageOf(item->icon()) == (item->text() == "yes" ? locked : unlocked);
    return item->text() + (isRight ? QString() : " with the wrong icon");
}

// Bold all along, or not at all.
bool isBold(const QTableWidget *table, int row)
{
    int count = 0;
    for (int column = 0; column < table->columnCount(); ++column) {
        count += table->item(row, column)->font().bold() ? 1 : 0;
    }
    return count == table->columnCount();
}

RowPicture rowOf(const QTableWidget *table, int row)
{
    RowPicture picture;
    picture.identifier = table->item(row, IdentifierColumn)->text();
    picture.description = table->item(row, DescriptionColumn)->text();
    picture.owner = table->item(row, OwnerColumn)->text();
    if (table->columnCount() > LockedColumn) {
        picture.locked = lockStateIn(table->item(row, LockedColumn));
    }
    picture.isBold = isBold(table, row);
    return picture;
}

// What is current and what is selected are the same row, or the picture is of neither.
int currentRowOf(const QTableWidget *table)
{
    const QModelIndexList selected = table->selectionModel()->selectedRows();
    const int selectedRow = selected.isEmpty() ? -1 : selected.constFirst().row();
    const bool isOne = selected.size() <= 1 && selectedRow == table->currentRow();
    return isOne ? selectedRow : -2;
}

} // namespace

ListPicture ListPicture::of(const QDialog *list)
{
    ListPicture picture;
    const QTableWidget *table = Table::in(list);
    for (int row = 0; row < table->rowCount(); ++row) {
        picture.rows << rowOf(table, row);
    }
    picture.currentRow = currentRowOf(table);
    picture.activeText = UserInput::textOf(list, "lineEdit_activeConfig");
    const auto *warning = UserInput::named<QLabel>(list, "label_error");
    picture.warning = warning->isHidden() ? QString() : warning->text();
    const auto *lock = UserInput::named<QPushButton>(list, "pushButton_lock");
    picture.lockButton = lock->isHidden() ? QString() : lock->text();
    for (const char *name : {"new", "apply", "delete", "edit", "lock", "save", "load", "exit"}) {
        const QString button = QString::fromLatin1(name);
        const QWidget *widget = UserInput::widgetNamed(list, "pushButton_" + button);
        if (widget->isVisible() && widget->isEnabled()) {
            picture.enabledButtons << button;
        }
    }
    picture.focus = UserInput::focusOf(list);
    return picture;
}

QStringList ListPicture::lines() const
{
    QStringList lines;
    for (const RowPicture &row : rows) {
        lines << QStringLiteral("%1%2 | %3 | %4 | %5")
                     .arg(row.isBold ? "* " : QString(), row.description, row.owner, row.identifier,
                          row.locked);
    }
    lines << QStringLiteral("current row: %1").arg(currentRow)
          << QStringLiteral("active: ") + activeText
          << QStringLiteral("warning: ") + warning
          // With no row to be locked it goes on saying what it said of some other one.
          << QStringLiteral("lock button: ") + (currentRow < 0 ? QString() : lockButton)
          << QStringLiteral("enabled: ") + enabledButtons.join(QLatin1Char(' '))
          << QStringLiteral("focus: ") + focus;
    return lines;
}
