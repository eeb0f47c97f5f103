#include "tool/printable.h"

#include <QString>
#include <QVector>

namespace {

constexpr int longestText = 400; // characters

QString shortened(const QString &text)
{
    if (text.size() <= longestText) {
        return text;
    }
    return text.left(longestText / 2) + QStringLiteral(" ... ") + text.right(longestText / 2);
}

} // namespace

QString printable(const QString &text)
{
    QString line;
    const QVector<uint> characters = shortened(text).toUcs4();
    for (const uint character : characters) {
        if (QChar::isPrint(character)) {
            line += QString::fromUcs4(&character, 1);
        } else {
            line += QStringLiteral("\\u{%1}").arg(character, 0, 16);
        }
    }
    return line;
}
