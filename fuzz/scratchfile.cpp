#include "fuzz/scratchfile.h"

#include <QFile>
#include <QTemporaryDir>

QString ScratchFile::path(const char *name)
{
    static const QTemporaryDir folder;
    return folder.filePath(QString::fromLatin1(name));
}

QString ScratchFile::make(const char *name, const QByteArray &content)
{
    QString filePath = path(name);
    QFile file(filePath);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()
        || !file.flush()) {
        qFatal("Cannot make %s", qPrintable(filePath));
    }
    return filePath;
}
