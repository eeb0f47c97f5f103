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

/// The paths of the fields that something is concluded from.
namespace FieldPath {
inline constexpr char name[] = "ZORControllerInfo/name";     ///< host name
inline constexpr char serial[] = "ZORControllerInfo/serial"; ///< serial number
inline constexpr char ptVersion[] =
    "ZORControllerInfo/ptVersion"; ///< version of the tracking software
inline constexpr char ctVersion[] = "ZORControllerInfo/ctVersion";     ///< version of the firmware
inline constexpr char systemModel[] = "ZORControllerInfo/systemModel"; ///< model
inline constexpr char creationDate[] =
    "ZORBackupInfo/creationDate";                                ///< when the document was written
inline constexpr char configData[] = "ZORBackupData/configData"; ///< all configurations
} // namespace FieldPath

/// Everything that an accepted backup says about its controller.
QVector<Field> fieldsOf(const BackupFile &backup);

/// The paths of those fields.
QStringList fieldPaths();

/// Whether @p name means the field at @p path: the path itself, or the last part of it.
bool isNamed(const QString &path, const QString &name);

/// The value of the field at that path; undefined if there is none.
QJsonValue valueAt(const QVector<Field> &fields, const char *path);

/// The value in one line, with nothing in it that could mislead a terminal.
QString textOf(const QJsonValue &value);

/// How many bytes of data a value stands for.
int sizeOf(const QJsonValue &value);
