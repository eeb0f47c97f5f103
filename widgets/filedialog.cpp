#include "widgets/filedialog.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>

namespace {

// Takes the chooser out of a parent that is being destroyed, and ends it. It must not die with the
// parent: boxes of its own may be open, which stand on the stack, and the code of its widgets under
// way.
void letGo(QFileDialog *chooser)
{
    chooser->setParent(nullptr);
    const auto boxes = chooser->findChildren<QDialog *>();
    for (QDialog *box : boxes) {
        box->reject();
    }
    chooser->reject();
}

QString run(QFileDialog *chooser, const QObject *owner)
{
    const QPointer<const QObject> watchedOwner(owner);
    const bool isAccepted = chooser->exec() == QDialog::Accepted;
    return watchedOwner && isAccepted ? chooser->selectedFiles().value(0) : QString();
}

// Runs a chooser that @p prepare has set up.
template <typename Prepare>
QString choose(const QObject *owner, QWidget *parent, const QString &caption,
               const QString &directory, const QString &filter, Prepare prepare)
{
    // Older than the chooser, so the parent destroys it first.
    const QPointer<QObject> sentinel(new QObject(parent));
    QFileDialog chooser(parent, caption, directory, filter);
    QObject::connect(sentinel, &QObject::destroyed, &chooser, [&chooser] { letGo(&chooser); });
    prepare(&chooser);
    QString path = run(&chooser, owner);
    delete sentinel.data();
    return path;
}

} // namespace

QString FileDialog::openFileName(const QObject *owner, QWidget *parent, const QString &caption,
                                 const QString &directory, const QString &filter)
{
    return choose(owner, parent, caption, directory, filter,
                  [](QFileDialog *chooser) { chooser->setFileMode(QFileDialog::ExistingFile); });
}

QString FileDialog::saveFileName(const QObject *owner, QWidget *parent, const QString &caption,
                                 const QString &proposal, const QString &filter)
{
    const QFileInfo proposed(proposal);
    return choose(owner, parent, caption, proposed.path(), filter,
                  [&proposed](QFileDialog *chooser) {
                      chooser->setAcceptMode(QFileDialog::AcceptSave);
                      chooser->setFileMode(QFileDialog::AnyFile);
                      chooser->selectFile(proposed.fileName());
                  });
}
