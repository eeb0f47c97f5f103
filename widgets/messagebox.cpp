#include "widgets/messagebox.h"

#include <QAbstractButton>
#include <QPointer>

namespace {

// A box that was closed without a button has been agreed to no more than its default button does.
MessageBox::Button answerOf(const QMessageBox &box, MessageBox::Button defaultButton)
{
    QAbstractButton *clicked = box.clickedButton();
    return clicked ? box.standardButton(clicked) : defaultButton;
}

MessageBox::Button show(QMessageBox::Icon icon, const QObject *owner, QWidget *parent,
                        const QString &title, const QString &text,
                        QMessageBox::StandardButtons buttons, MessageBox::Button defaultButton)
{
    const QPointer<const QObject> watchedOwner(owner);
    // Not on the stack: a parent that is destroyed meanwhile takes the box with it.
    const QPointer<QMessageBox> box(new QMessageBox(icon, title, text, buttons, parent));
    box->setTextFormat(Qt::PlainText); // a file's name may look like markup
    box->setDefaultButton(defaultButton);
    box->exec();
    const MessageBox::Button answer = box ? answerOf(*box, defaultButton) : QMessageBox::NoButton;
    delete box.data();
    return watchedOwner ? answer : QMessageBox::NoButton;
}

} // namespace

MessageBox::Button MessageBox::information(const QObject *owner, QWidget *parent,
                                           const QString &title, const QString &text)
{
    return show(QMessageBox::Information, owner, parent, title, text, QMessageBox::Ok,
                QMessageBox::Ok);
}

MessageBox::Button MessageBox::critical(const QObject *owner, QWidget *parent, const QString &title,
                                        const QString &text)
{
    return show(QMessageBox::Critical, owner, parent, title, text, QMessageBox::Ok,
                QMessageBox::Ok);
}

MessageBox::Button MessageBox::outcome(const QObject *owner, QWidget *parent, bool isSuccess,
                                       const QString &title, const QString &text)
{
    return isSuccess ? information(owner, parent, title, text)
                     : critical(owner, parent, title, text);
}

MessageBox::Button MessageBox::warning(const QObject *owner, QWidget *parent, const QString &title,
                                       const QString &text, QMessageBox::StandardButtons buttons,
                                       Button defaultButton)
{
    return show(QMessageBox::Warning, owner, parent, title, text, buttons, defaultButton);
}

MessageBox::Button MessageBox::question(const QObject *owner, QWidget *parent, const QString &title,
                                        const QString &text, QMessageBox::StandardButtons buttons,
                                        Button defaultButton)
{
    return show(QMessageBox::Question, owner, parent, title, text, buttons, defaultButton);
}
