#include "channel/readabletable.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>

namespace {

class DelegateWithTips : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override
    {
        if (event->type() != QEvent::ToolTip) {
            return QStyledItemDelegate::helpEvent(event, view, option, index);
        }
        const bool isShortened = sizeHint(option, index).width() > option.rect.width();
        // Never taken for HTML, whatever the controller has sent.
        const QString tip = Qt::convertFromPlainText(index.data().toString(), Qt::WhiteSpaceNormal);
        QToolTip::showText(event->globalPos(), isShortened ? tip : QString(), view, option.rect);
        return true;
    }
};

constexpr int gridLine = 1; // pixels below each row, which belong to its height

// The least height of a row that cuts no letter. A font is higher than its letters, since it has
// room for accents on capitals, too; what is free on both sides of them may be cut.
int leastHeight(const QFontMetrics &metrics)
{
    const QRect letters = metrics.tightBoundingRect(QStringLiteral("lg"));
    const int freeAbove = metrics.ascent() + letters.top();
    const int freeBelow = metrics.descent() - (letters.bottom() + 1);
    return metrics.height() - 2 * std::clamp(freeAbove, 0, std::max(freeBelow, 0)) + gridLine;
}

} // namespace

void ReadableTable::prepare(QTableWidget *table, int rowHeight)
{
    const int height = std::max(rowHeight, leastHeight(table->fontMetrics()));
    table->verticalHeader()->setMinimumSectionSize(height);
    table->verticalHeader()->setDefaultSectionSize(height);
    table->horizontalHeader()->setTextElideMode(Qt::ElideRight);
    table->setItemDelegate(new DelegateWithTips(table));
}
