#include "widgets/filedialog.h"

#include "widgets/repaint.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QPointer>

namespace {

// A name without extension is taken as it stands.
QString withExtension(const QString &choice, const QString &extension)
{
    const QString name = extension.isEmpty() ? choice : choice.trimmed();
    return name.endsWith(extension, Qt::CaseInsensitive) ? name : name + extension;
}

class Chooser : public QFileDialog
{
public:
    using QFileDialog::QFileDialog;

    QString extension; ///< what the file's name will end with

private:
    // Asks before it overwrites the file that will be written, not the one that was typed.
    void accept() override
    {
        const QString choice = selectedFiles().value(0);
        const QString written = withExtension(choice, extension);
        auto *nameEdit = findChild<QLineEdit *>(); // a platform's own chooser has none
        if (nameEdit != nullptr && written != choice && !QFileInfo(choice).isDir()) {
            nameEdit->setText(written);
        }
        QFileDialog::accept();
    }
};

// Takes the chooser out of a parent that is being destroyed, and ends it. It must not die with the
// parent: boxes of its own may be open, which stand on the stack, and the code of its widgets under
// way.
void letGo(QFileDialog *chooser)
{
    chooser->setParent(nullptr); // hides it, which ends it
    const auto boxes = chooser->findChildren<QDialog *>();
    for (QDialog *box : boxes) {
        box->reject();
    }
}

QString choose(const QObject *owner, QWidget *parent, const QString &caption, const QString &start,
               const QString &filter, QFileDialog::AcceptMode acceptMode,
               QFileDialog::FileMode fileMode, const QString &extension)
{
    const QPointer<const QObject> watchedOwner(owner);
    // Older than the chooser, so the parent destroys it first.
    const QPointer<QObject> sentinel(new QObject(parent));
    Chooser chooser(parent, caption, start, filter);
    QObject::connect(sentinel, &QObject::destroyed, &chooser, [&chooser] { letGo(&chooser); });
    chooser.setSupportedSchemes({QStringLiteral("file")});
    chooser.setAcceptMode(acceptMode);
    chooser.setFileMode(fileMode);
    chooser.extension = extension;
    const bool isAccepted = chooser.exec() == QDialog::Accepted;
    delete sentinel.data();
    repaintWindows();
    return watchedOwner && isAccepted ? withExtension(chooser.selectedFiles().value(0), extension)
                                      : QString();
}

} // namespace

QString FileDialog::openFileName(const QObject *owner, QWidget *parent, const QString &caption,
                                 const QString &directory, const QString &filter)
{
    return choose(owner, parent, caption, directory, filter, QFileDialog::AcceptOpen,
                  QFileDialog::ExistingFile, {});
}

QString FileDialog::saveFileName(const QObject *owner, QWidget *parent, const QString &caption,
                                 const QString &proposal, const QString &filter,
                                 const QString &extension)
{
    return choose(owner, parent, caption, proposal, filter, QFileDialog::AcceptSave,
                  QFileDialog::AnyFile, extension);
}
