#include "tests/endtoend/transferfiles.h"

#include <QFile>

Archive::Item TransferFiles::item(const Configuration &configuration)
{
    return {configuration.identifier, configuration.owner, configuration.description,
            configuration.data};
}

Archive::Item TransferFiles::baseItem(const ControllerState &state)
{
    return {"__base", {}, "base configuration", state.baseData};
}

QByteArray TransferFiles::wholeArchive(const ControllerState &state)
{
    QVector<Archive::Item> items{baseItem(state)};
    for (const Configuration &configuration : state.configurations) {
        items << item(configuration);
    }
    return Archive::pack(items);
}

QByteArray TransferFiles::contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

QString TransferFiles::write(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
    return path;
}
