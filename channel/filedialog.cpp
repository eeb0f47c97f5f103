#include "channel/filedialog.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>

namespace {

QString run(QFileDialog *dialog, const QObject *owner)
{
    const QPointer<const QObject> watchedOwner(owner);
    const QPointer<QFileDialog> watchedDialog(dialog);
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    const QString path = watchedDialog && isAccepted ? dialog->selectedFiles().value(0) : QString();
    delete watchedDialog.data();
    return watchedOwner ? path : QString();
}

} // namespace

QString FileDialog::openFileName(const QObject *owner, QWidget *parent, const QString &caption,
                                 const QString &directory, const QString &filter)
{
    // Not on the stack: a parent that is destroyed meanwhile takes the dialog with it.
    auto *dialog = new QFileDialog(parent, caption, directory, filter);
    dialog->setFileMode(QFileDialog::ExistingFile);
    return run(dialog, owner);
}

QString FileDialog::saveFileName(const QObject *owner, QWidget *parent, const QString &caption,
                                 const QString &proposal, const QString &filter)
{
    const QFileInfo proposed(proposal);
    auto *dialog = new QFileDialog(parent, caption, proposed.path(), filter);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->selectFile(proposed.fileName());
    return run(dialog, owner);
}
