#pragma once

#include "host/tour/modalwatcher.h"
#include "host/tour/stepfailed.h"

#include <QDialog>
#include <QPoint>

class QTableWidget;
class Tour;

/// Drives one open dialog by the object names of its widgets, with mouse and key events.
///
/// Every operation throws StepFailed where a person could not do it: widgets that are missing,
/// hidden or disabled.
class DialogDriver
{
public:
    /// Neither is owned.
    DialogDriver(Tour &tour, QDialog *dialog);

    void picture(const QString &name);
    /// Takes a picture of the dialog in front of the host's window.
    void pictureOverWindow(const QString &name);

    /// Clicks a button, or ticks a box; the windows of @p steps open meanwhile.
    void click(const QString &button, const QVector<ModalStep> &steps = {});
    /// Replaces the text of a field by typing.
    void enter(const QString &field, const QString &text);
    /// Presses a key where the focus is.
    void press(Qt::Key key);
    /// Clicks the row of a table whose third column, the identifier, is @p identifier.
    void select(const QString &table, const QString &identifier);
    /// Clicks it twice; the windows of @p steps open meanwhile.
    void doubleClick(const QString &table, const QString &identifier,
                     const QVector<ModalStep> &steps);

    QString title() const { return m_dialog->windowTitle(); }
    QString text(const QString &name) const;
    bool isEnabled(const QString &name) const;
    bool isTicked(const QString &box) const;
    bool isVisible(const QString &name) const;
    int rowCount(const QString &table) const;
    /// The identifier in the current row of a table, empty when there is none.
    QString currentIdentifier(const QString &table) const;
    /// The text in the row of @p identifier; empty when there is no such row.
    QString cell(const QString &table, const QString &identifier, int column) const;

private:
    template <typename Widget>
    Widget *find(const QString &name) const;
    QWidget *usable(const QString &name) const;
    QPoint placeOf(QTableWidget *table, const QString &identifier) const;
    int rowOf(const QTableWidget *table, const QString &identifier) const;

    Tour &m_tour;
    QDialog *m_dialog;
};

template <typename Widget>
Widget *DialogDriver::find(const QString &name) const
{
    auto *widget = m_dialog->findChild<Widget *>(name);
    if (!widget) {
        throw StepFailed(QStringLiteral("the dialog lacks \"%1\"").arg(name));
    }
    return widget;
}
