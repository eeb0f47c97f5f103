#include "channel/readabletable.h"

#include <QHeaderView>
#include <QTableWidget>
#include <QTextDocument>

#include <algorithm>

namespace {

// The least height of a row that cuts no letter. A font is higher than its letters, since it has
// room for accents on capitals, too; what is free on both sides of them may be cut.
int leastHeight(const QFontMetrics &metrics)
{
    const QRect letters = metrics.tightBoundingRect(QStringLiteral("lg"));
    const int freeAbove = metrics.ascent() + letters.top();
    const int freeBelow = metrics.descent() - (letters.bottom() + 1);
    return metrics.height() - 2 * std::clamp(freeAbove, 0, std::max(freeBelow, 0));
}

} // namespace

void ReadableTable::prepare(QTableWidget *table, int rowHeight)
{
    const int height = std::max(rowHeight, leastHeight(table->fontMetrics()));
    table->verticalHeader()->setMinimumSectionSize(height);
    table->verticalHeader()->setDefaultSectionSize(height);
    table->horizontalHeader()->setTextElideMode(Qt::ElideRight);
}

QTableWidgetItem *ReadableTable::cell(const QString &text)
{
    auto *item = new QTableWidgetItem(text);
    // Never taken for HTML, whatever the controller sends.
    item->setToolTip(text.isEmpty() ? QString()
                                    : Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal));
    return item;
}
