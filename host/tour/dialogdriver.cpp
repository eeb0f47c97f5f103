#include "host/tour/dialogdriver.h"

#include "host/tour/tour.h"

#include <QCheckBox>
#include <QTableWidget>
#include <QTest>

namespace {

constexpr int identifierColumn = 2;

// Where a person would click: check boxes and radio buttons react on their sign and text only.
QPoint hotSpot(const QWidget *widget)
{
    return {qMin(widget->width() / 2, widget->height() / 2), widget->height() / 2};
}

} // namespace

DialogDriver::DialogDriver(Tour &tour, QDialog *dialog)
    : m_tour(tour)
    , m_dialog(dialog)
{
}

void DialogDriver::picture(const QString &name)
{
    m_tour.picture(name, m_dialog);
}

void DialogDriver::pictureOverWindow(const QString &name)
{
    m_tour.pictureWindow(name, m_dialog);
}

void DialogDriver::click(const QString &button, const QVector<ModalStep> &steps)
{
    QWidget *widget = usable(button);
    m_tour.during([widget] { QTest::mouseClick(widget, Qt::LeftButton, {}, hotSpot(widget)); },
                  steps);
}

void DialogDriver::enter(const QString &field, const QString &text)
{
    QWidget *edit = usable(field);
    QTest::mouseClick(edit, Qt::LeftButton);
    QTest::keySequence(edit, QKeySequence::SelectAll);
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

void DialogDriver::press(Qt::Key key)
{
    QWidget *focus = m_dialog->focusWidget();
    QTest::keyClick(focus ? focus : m_dialog, key);
}

void DialogDriver::select(const QString &table, const QString &identifier)
{
    usable(table);
    auto *widget = find<QTableWidget>(table);
    QTest::mouseClick(widget->viewport(), Qt::LeftButton, {}, placeOf(widget, identifier));
}

void DialogDriver::doubleClick(const QString &table, const QString &identifier,
                               const QVector<ModalStep> &steps)
{
    usable(table);
    auto *widget = find<QTableWidget>(table);
    const QPoint place = placeOf(widget, identifier);
    QTest::mouseClick(widget->viewport(), Qt::LeftButton, {}, place);
    m_tour.during([&] { QTest::mouseDClick(widget->viewport(), Qt::LeftButton, {}, place); },
                  steps);
}

QString DialogDriver::text(const QString &name) const
{
    return find<QWidget>(name)->property("text").toString();
}

bool DialogDriver::isEnabled(const QString &name) const
{
    return find<QWidget>(name)->isEnabled();
}

bool DialogDriver::isTicked(const QString &box) const
{
    return find<QCheckBox>(box)->isChecked();
}

bool DialogDriver::isVisible(const QString &name) const
{
    return find<QWidget>(name)->isVisible();
}

int DialogDriver::rowCount(const QString &table) const
{
    return find<QTableWidget>(table)->rowCount();
}

QString DialogDriver::currentIdentifier(const QString &table) const
{
    const auto *widget = find<QTableWidget>(table);
    const QTableWidgetItem *item = widget->item(widget->currentRow(), identifierColumn);
    return item ? item->text() : QString();
}

QString DialogDriver::cell(const QString &table, const QString &identifier, int column) const
{
    const auto *widget = find<QTableWidget>(table);
    const QTableWidgetItem *item = widget->item(rowOf(widget, identifier), column);
    return item ? item->text() : QString();
}

QWidget *DialogDriver::usable(const QString &name) const
{
    auto *widget = find<QWidget>(name);
    if (!widget->isVisible() || !widget->isEnabled()) {
        throw StepFailed(QStringLiteral("\"%1\" is hidden or disabled").arg(name));
    }
    return widget;
}

QPoint DialogDriver::placeOf(QTableWidget *table, const QString &identifier) const
{
    const int row = rowOf(table, identifier);
    if (row < 0) {
        throw StepFailed(QStringLiteral("the table lacks \"%1\"").arg(identifier));
    }
    const QTableWidgetItem *item = table->item(row, 0);
    table->scrollToItem(item);
    return table->visualItemRect(item).center();
}

int DialogDriver::rowOf(const QTableWidget *table, const QString &identifier) const
{
    for (int row = 0; row < table->rowCount(); ++row) {
        const QTableWidgetItem *item = table->item(row, identifierColumn);
        if (item != nullptr && item->text() == identifier) {
            return row;
        }
    }
    return -1;
}
