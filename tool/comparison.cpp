#include "tool/comparison.h"

#include "tool/judgement.h"
#include "tool/terminal.h"

#include <QJsonObject>

#include <algorithm>

namespace {

bool isAnyNameOf(const Field &field, const QStringList &names)
{
    return std::any_of(names.begin(), names.end(),
                       [&field](const QString &name) { return isNamed(field.path, name); });
}

QString valueLine(char sign, const QJsonValue &value, Terminal::Colour colour)
{
    const QString line = QStringLiteral("  %1 %2").arg(QLatin1Char(sign)).arg(textOf(value));
    return Terminal::painted(line, colour) + QLatin1Char('\n');
}

QString linesOn(const Field &first, const Field &second)
{
    QString lines = QStringLiteral("%1 (%2)\n").arg(first.title, first.path)
        + valueLine('-', first.value, Terminal::Colour::Red)
        + valueLine('+', second.value, Terminal::Colour::Green);
    if (first.path == QLatin1String(FieldPath::configData)) {
        lines += QStringLiteral("  (in the controller's own format: there is no telling which "
                                "configurations differ)\n");
    }
    return lines;
}

QJsonObject toJson(const Field &first, const Field &second)
{
    return {{QStringLiteral("field"), first.path},
            {QStringLiteral("first"), first.value},
            {QStringLiteral("second"), second.value}};
}

} // namespace

Comparison compare(const Judgement &first, const Judgement &second, const QStringList &ignored)
{
    Comparison comparison;
    for (int i = 0; i < first.fields.size(); ++i) {
        const Field &before = first.fields.at(i);
        const Field &after = second.fields.at(i);
        if (before.value != after.value && !isAnyNameOf(before, ignored)) {
            comparison.text += linesOn(before, after);
            comparison.json.append(toJson(before, after));
        }
    }
    return comparison;
}
