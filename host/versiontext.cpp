#include "host/versiontext.h"

#include <QRegularExpression>
#include <QStringList>

std::optional<Version> versionFromText(const QString &text)
{
    static const QRegularExpression pattern(QRegularExpression::anchoredPattern(
        QStringLiteral("v?(\\d{1,9})(?:\\.(\\d{1,9})(?:\\.(\\d{1,9}))?)?")));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const auto place = [&match](int group) {
        const QString digits = match.captured(group);
        return digits.isEmpty() ? -1 : digits.toInt();
    };
    return Version{place(1), place(2), place(3)};
}

QString versionText(const Version &version)
{
    QStringList places;
    for (const int place : {version.major, version.minor, version.micro}) {
        if (place < 0) {
            break;
        }
        places << QString::number(place);
    }
    return places.join(QLatin1Char('.'));
}
