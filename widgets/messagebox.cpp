#include "widgets/messagebox.h"

#include "widgets/repaint.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPointer>

namespace {

// A box that was closed without a button has been agreed to no more than its default button does.
MessageBox::Button answerOf(const QMessageBox &box, MessageBox::Button defaultButton)
{
    QAbstractButton *clicked = box.clickedButton();
    return clicked ? box.standardButton(clicked) : defaultButton;
}

} // namespace

MessageBox::Button MessageBox::show(QMessageBox::Icon icon, const QObject *owner, QWidget *parent,
                                    const QString &title, const QString &text,
                                    QMessageBox::StandardButtons buttons, Button defaultButton)
{
    const QPointer<const QObject> watchedOwner(owner);
    // Not on the stack: a parent that is destroyed meanwhile takes the box with it.
    const QPointer<QMessageBox> box(new QMessageBox(icon, title, text, buttons, parent));
    box->setTextFormat(Qt::PlainText); // a file's name may look like markup
    box->setDefaultButton(defaultButton);
    box->exec();
    const Button answer = box ? answerOf(*box, defaultButton) : QMessageBox::NoButton;
    delete box.data();
    repaintWindows();
    return watchedOwner ? answer : QMessageBox::NoButton;
}

void MessageBox::warnAbout(QLineEdit *field, QWidget *parent, const QString &title,
                           const QString &text)
{
    if (show(QMessageBox::Warning, field, parent, title, text) != QMessageBox::NoButton) {
        field->setFocus();
        field->selectAll();
    }
}
