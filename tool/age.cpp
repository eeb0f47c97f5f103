#include "tool/age.h"

#include <QDateTime>
#include <QMap>
#include <QRegularExpression>

namespace {

constexpr qint64 minute = 60; // seconds
constexpr qint64 hour = 60 * minute;
constexpr qint64 day = 24 * hour;
constexpr qint64 week = 7 * day;

} // namespace

std::optional<qint64> Age::parse(const QString &text)
{
    static const QMap<QString, qint64> units{{QStringLiteral("m"), minute},
                                             {QStringLiteral("h"), hour},
                                             {QStringLiteral("d"), day},
                                             {QStringLiteral("w"), week}};
    static const QRegularExpression pattern(QStringLiteral("\\A([0-9]{1,6})([mhdw])\\z"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    return match.captured(1).toLongLong() * units.value(match.captured(2));
}

bool Age::isYounger(const QDateTime &made, qint64 limit, const QDateTime &now)
{
    const qint64 age = made.secsTo(now);
    return made.isValid() && age < limit && age >= -day;
}
