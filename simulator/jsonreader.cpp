#include "simulator/jsonreader.h"

#include "simulator/limits.h"

#include <cmath>

void JsonReader::enter(const QString &place, const QJsonObject &object)
{
    m_place = place;
    m_object = object;
}

bool JsonReader::flag(const char *key)
{
    return value(key, QJsonValue::Bool, "true or false").toBool();
}

qint64 JsonReader::wholeNumber(const char *key)
{
    constexpr double mostExact = 9007199254740992.0; // a JSON number is a double
    const double number = value(key, QJsonValue::Double, "a number").toDouble();
    if (std::floor(number) != number || std::fabs(number) > mostExact) {
        complain(QStringLiteral("\"%1\" is no whole number").arg(QLatin1String(key)));
        return 0;
    }
    return static_cast<qint64>(number);
}

QByteArray JsonReader::text(const char *key)
{
    const QString unicode = value(key, QJsonValue::String, "a text").toString();
    QByteArray latin1 = unicode.toLatin1();
    if (QString::fromLatin1(latin1) != unicode || !Limits::isLine(latin1)) {
        complain(QStringLiteral("\"%1\" is no line of Latin-1").arg(QLatin1String(key)));
    }
    return latin1;
}

QByteArray JsonReader::bytes(const char *key)
{
    const QString base64 = value(key, QJsonValue::String, "a text").toString();
    const auto decoded =
        QByteArray::fromBase64Encoding(base64.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) {
        complain(QStringLiteral("\"%1\" is no Base64").arg(QLatin1String(key)));
    }
    return decoded.decoded;
}

QJsonObject JsonReader::object(const char *key)
{
    return value(key, QJsonValue::Object, "an object").toObject();
}

QVector<QJsonObject> JsonReader::objects(const char *key)
{
    QVector<QJsonObject> objects;
    const QJsonArray array = value(key, QJsonValue::Array, "a list").toArray();
    for (const QJsonValue &element : array) {
        if (!element.isObject()) {
            complain(
                QStringLiteral("\"%1\" holds something else than objects").arg(QLatin1String(key)));
        }
        objects << element.toObject();
    }
    return objects;
}

void JsonReader::complain(const QString &problem)
{
    if (m_problem.isEmpty()) {
        m_problem = m_place + QStringLiteral(": ") + problem;
    }
}

QJsonValue JsonReader::value(const char *key, QJsonValue::Type type, const char *typeName)
{
    QJsonValue value = m_object.value(QLatin1String(key));
    if (value.isUndefined()) {
        complain(QStringLiteral("\"%1\" is missing").arg(QLatin1String(key)));
    } else if (value.type() != type) {
        complain(
            QStringLiteral("\"%1\" is not %2").arg(QLatin1String(key), QLatin1String(typeName)));
    }
    return value;
}
