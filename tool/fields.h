#pragma once

#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <QVector>

class BackupFile;

/// One thing that a backup says.
struct Field
{
    QString path;     ///< of the element in the document, below the root
    QString title;    ///< for people
    QJsonValue value; ///< a text, a list of texts, or the size and the hash of data
};

/// Everything that an accepted backup says about its controller.
QVector<Field> fieldsOf(const BackupFile &backup);

/// The paths of those fields.
QStringList fieldPaths();

/// Whether @p name means the field at @p path: the path itself, or the last part of it.
bool isNamed(const QString &path, const QString &name);

/// The value in one line, with nothing in it that could mislead a terminal.
QString textOf(const QJsonValue &value);
