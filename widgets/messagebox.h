#pragma once

#include <QMessageBox>

/// The one place that opens message boxes.
///
/// While a box is open the host may destroy whoever opened it, by releasing the module or by
/// deleting its window. Each function therefore takes the @p owner, the object whose code goes on
/// after the box, besides the @p parent of the box, which may be null. Once the owner is gone the
/// answer is QMessageBox::NoButton, and the caller returns at once without touching any member.
namespace MessageBox {

/// The answer of a box.
using Button = QMessageBox::StandardButton;

/// Something to know; the box has the button Ok alone.
Button information(const QObject *owner, QWidget *parent, const QString &title,
                   const QString &text);
/// Something that broke off; the box has the button Ok alone.
Button critical(const QObject *owner, QWidget *parent, const QString &title, const QString &text);
/// How something went: information() or, without success, critical().
Button outcome(const QObject *owner, QWidget *parent, bool isSuccess, const QString &title,
               const QString &text);

/// Boxes with more than Ok name their default button, the harmless one: it is the answer, too, when
/// the box is closed without any.
Button warning(const QObject *owner, QWidget *parent, const QString &title, const QString &text,
               QMessageBox::StandardButtons buttons = QMessageBox::Ok,
               Button defaultButton = QMessageBox::Ok);
/// Something to decide; with buttons and default as warning() has them.
Button question(const QObject *owner, QWidget *parent, const QString &title, const QString &text,
                QMessageBox::StandardButtons buttons, Button defaultButton);

} // namespace MessageBox
