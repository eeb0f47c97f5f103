#pragma once

#include <QMessageBox>

class QLineEdit;

/// The one place that opens message boxes.
namespace MessageBox {

/// The answer of a box.
using Button = QMessageBox::StandardButton;

/// Shows a box until the user has answered it.
///
/// Meanwhile the host may destroy whoever opened it, by releasing the module or by deleting its
/// window. Once the owner is gone the answer is QMessageBox::NoButton, and the caller returns at
/// once without touching any member.
/// @param icon           Information for what there is to know, Critical for what broke off,
/// Warning
///                       and Question for what has to be decided
/// @param owner          the object whose code goes on after the box
/// @param parent         the parent of the box; may be null
/// @param title          of its window
/// @param text           shown as it stands, never as markup
/// @param buttons        what can be answered
/// @param defaultButton  the harmless one: it is the answer, too, when the box is closed without
/// any
Button show(QMessageBox::Icon icon, const QObject *owner, QWidget *parent, const QString &title,
            const QString &text, QMessageBox::StandardButtons buttons = QMessageBox::Ok,
            Button defaultButton = QMessageBox::Ok);

/// Warns about what stands in @p field, which may be destroyed meanwhile, and leads back to it.
void warnAbout(QLineEdit *field, QWidget *parent, const QString &title, const QString &text);

} // namespace MessageBox
