#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QVector>

/// Reads the members of JSON objects that must be there and be of their type. Remembers the first
/// thing that is wrong and goes on with empty values, so that a caller asks only once, at the end.
class JsonReader
{
public:
    /// Reads @p object from now on; @p place names it in problems.
    void enter(const QString &place, const QJsonObject &object);

    bool has(const char *key) const { return m_object.contains(QLatin1String(key)); }
    bool flag(const char *key);
    qint64 wholeNumber(const char *key);
    /// A text without control characters, every character being one byte of Latin-1.
    QByteArray text(const char *key);
    /// Bytes in Base64.
    QByteArray bytes(const char *key);
    QJsonObject object(const char *key);
    /// Objects in a list.
    QVector<QJsonObject> objects(const char *key);

    void complain(const QString &problem);
    /// Empty as long as all is well.
    QString problem() const { return m_problem; }

private:
    QJsonValue value(const char *key, QJsonValue::Type type, const char *typeName);

    QJsonObject m_object;
    QString m_place;
    QString m_problem;
};
