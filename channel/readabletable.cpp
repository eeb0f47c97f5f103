#include "channel/readabletable.h"

#include <QHeaderView>
#include <QTableWidget>
#include <QTextDocument>

#include <algorithm>

namespace {

// What letters take. A font's own height has room for accents on capitals, too, and would make
// rows higher than they are asked to be where all letters fit.
int letterHeight(const QTableWidget *table)
{
    return table->fontMetrics().tightBoundingRect(QStringLiteral("lg")).height();
}

} // namespace

void ReadableTable::setRowHeight(QTableWidget *table, int pixels)
{
    const int height = std::max(pixels, letterHeight(table));
    table->verticalHeader()->setMinimumSectionSize(height);
    table->verticalHeader()->setDefaultSectionSize(height);
}

QTableWidgetItem *ReadableTable::cell(const QString &text)
{
    auto *item = new QTableWidgetItem(text);
    // Never taken for HTML, whatever the controller sends.
    item->setToolTip(text.isEmpty() ? QString()
                                    : Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal));
    return item;
}
