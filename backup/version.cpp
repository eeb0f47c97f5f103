#include "backup/version.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <array>
#include <tuple>

namespace {

std::tuple<int, int, int> places(const Version &version)
{
    return {version.major, version.minor, version.micro};
}

} // namespace

Version parseVersion(const QString &text, bool *ok)
{
    QString numbers = text.toLower();
    if (numbers.startsWith(QLatin1Char('v'))) {
        numbers.remove(0, 1);
    }
    static const QRegularExpression trailingWord(QStringLiteral("[a-z-]"));
    const int wordStart = numbers.indexOf(trailingWord);
    if (wordStart >= 0) {
        numbers.truncate(wordStart);
    }

    Version version;
    const std::array<int *, 3> targets{&version.major, &version.minor, &version.micro};
    bool isNumber = false;
    std::size_t place = 0;
    const QStringList parts = numbers.split(QLatin1Char('.'));
    for (const QString &part : parts) {
        if (place == targets.size()) {
            break;
        }
        *targets.at(place++) = part.toInt(&isNumber);
        if (!isNumber) {
            break;
        }
    }
    if (ok) {
        *ok = isNumber;
    }
    return version;
}

QString versionToString(const Version &version)
{
    if (version.major < 0) {
        return {};
    }
    QString text = QLatin1Char('v') + QString::number(version.major);
    if (version.minor >= 0) {
        text += QLatin1Char('.') + QString::number(version.minor);
        if (version.micro >= 0) {
            text += QLatin1Char('.') + QString::number(version.micro);
        }
    }
    return text;
}

bool operator<(const Version &left, const Version &right)
{
    return places(left) < places(right);
}

bool operator==(const Version &left, const Version &right)
{
    return places(left) == places(right);
}

bool operator!=(const Version &left, const Version &right)
{
    return !(left == right);
}
