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
        const QString text = isShortened ? index.data().toString() : QString();
        QToolTip::showText(event->globalPos(), ReadableTable::toolTip(text), view, option.rect);
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

QString ReadableTable::toolTip(const QString &text)
{
    return text.isEmpty() ? text : Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal);
}
