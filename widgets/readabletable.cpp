#include "widgets/readabletable.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QTextDocument>
#include <QToolTip>

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

} // namespace

void ReadableTable::prepare(QTableWidget *table, int rowHeight)
{
    table->verticalHeader()->setDefaultSectionSize(rowHeight); // Qt keeps to the font's minimum
    table->horizontalHeader()->setTextElideMode(Qt::ElideRight);
    table->setItemDelegate(new DelegateWithTips(table));
}
