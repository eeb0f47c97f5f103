#include "channel/messagebox.h"

#include <QPointer>

namespace {

MessageBox::Button show(QMessageBox::Icon icon, const QObject *owner, QWidget *parent,
                        const QString &title, const QString &text,
                        QMessageBox::StandardButtons buttons, MessageBox::Button defaultButton)
{
    const QPointer<const QObject> watchedOwner(owner);
    // Not on the stack: a parent that is destroyed meanwhile takes the box with it.
    const QPointer<QMessageBox> box(new QMessageBox(icon, title, text, buttons, parent));
    box->setTextFormat(Qt::PlainText); // a file's name may look like markup
    box->setDefaultButton(defaultButton);
    const int answer = box->exec();
    delete box.data();
    return watchedOwner ? static_cast<MessageBox::Button>(answer) : QMessageBox::NoButton;
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
