#include "backup/version.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <tuple>

namespace {

std::tuple<int, int, int> tied(const Version &version)
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
    int *const places[] = {&version.major, &version.minor, &version.micro};
    bool isNumber = true;
    const QStringList parts = numbers.split(QLatin1Char('.'));
    for (int i = 0; i < std::min(parts.size(), 3) && isNumber; ++i) {
        *places[i] = parts.at(i).toInt(&isNumber);
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
    return tied(left) < tied(right);
}

bool operator==(const Version &left, const Version &right)
{
    return tied(left) == tied(right);
}
