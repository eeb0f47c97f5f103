#include "tool/fields.h"

#include "backup/version.h"
#include "tool/backupfile.h"
#include "tool/printable.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QVariant>

#include <algorithm>

namespace {

const QLatin1String sizeKey("size");
const QLatin1String hashKey("sha256");

// Data are told apart by their hash: nobody wants to see megabytes of them.
QJsonObject summaryOf(const QByteArray &data)
{
    const QByteArray hash = QCryptographicHash::hash(data, QCryptographicHash::Sha256);
    return {{sizeKey, data.size()}, {hashKey, QString::fromLatin1(hash.toHex())}};
}

struct FieldKind
{
    const char *path;
    const char *title;
    QJsonValue (*value)(const BackupFile &);
};

using File = const BackupFile &;

constexpr FieldKind kinds[] = {
    {FieldPath::name, "Host name", [](File f) -> QJsonValue { return f.record().name; }},
    {FieldPath::serial, "Serial number", [](File f) -> QJsonValue { return f.record().serial; }},
    {FieldPath::ptVersion, "Tracking software",
     [](File f) -> QJsonValue { return versionToString(f.record().ptVersion); }},
    {FieldPath::ctVersion, "Firmware",
     [](File f) -> QJsonValue { return versionToString(f.record().ctVersion); }},
    {FieldPath::systemModel, "Model", [](File f) -> QJsonValue { return f.record().systemModel; }},
    {FieldPath::creationDate, "Created", [](File f) -> QJsonValue { return f.creationDate(); }},
    {"ZORBackupData/net", "Network", [](File f) -> QJsonValue { return f.record().net; }},
    {"ZORBackupData/domain", "Domain", [](File f) -> QJsonValue { return f.record().domain; }},
    {"ZORBackupData/nameServer", "Name server",
     [](File f) -> QJsonValue { return f.record().nameServer; }},
    {"ZORBackupData/ntpServer", "Time server",
     [](File f) -> QJsonValue { return f.record().ntpServer; }},
    {"ZORBackupData/slaves", "Cascade",
     [](File f) -> QJsonValue { return QJsonArray::fromStringList(f.record().slaves); }},
    {"ZORBackupData/activeConfig", "Active configuration",
     [](File f) -> QJsonValue { return f.record().activeConfig; }},
    {FieldPath::configData, "Configuration data",
     [](File f) -> QJsonValue { return summaryOf(f.record().configData); }},
};

} // namespace

QVector<Field> fieldsOf(const BackupFile &backup)
{
    QVector<Field> fields;
    for (const FieldKind &kind : kinds) {
        fields.append(
            {QString::fromLatin1(kind.path), QString::fromLatin1(kind.title), kind.value(backup)});
    }
    return fields;
}

QStringList fieldPaths()
{
    QStringList paths;
    for (const FieldKind &kind : kinds) {
        paths << QString::fromLatin1(kind.path);
    }
    return paths;
}

bool isNamed(const QString &path, const QString &name)
{
    return path == name || path.section(QLatin1Char('/'), -1) == name;
}

QJsonValue valueAt(const QVector<Field> &fields, const char *path)
{
    const auto found = std::find_if(fields.begin(), fields.end(), [path](const Field &field) {
        return field.path == QLatin1String(path);
    });
    return found == fields.end() ? QJsonValue(QJsonValue::Undefined) : found->value;
}

int sizeOf(const QJsonValue &value)
{
    return value[sizeKey].toInt();
}

QString textOf(const QJsonValue &value)
{
    if (value.isObject()) {
        return QStringLiteral("%1 bytes, SHA-256 %2")
            .arg(sizeOf(value))
            .arg(value[hashKey].toString());
    }
    if (!value.isArray()) {
        return printable(value.toString());
    }
    QStringList texts;
    const QVariantList items = value.toArray().toVariantList();
    for (const QVariant &item : items) {
        texts << printable(item.toString());
    }
    return texts.isEmpty() ? QStringLiteral("none") : texts.join(QStringLiteral(", "));
}
