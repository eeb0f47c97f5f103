#include "tool/comparison.h"

#include "tool/backupfile.h"
#include "tool/fields.h"

#include <QJsonArray>

#include <algorithm>

namespace {

Outcome refuse(Outcome outcome, const BackupFile &first, const BackupFile &second)
{
    QJsonArray problems;
    for (const BackupFile *file : {&first, &second}) {
        if (file->refusal()) {
            problems.append(refusalJson(*file));
            outcome.complaint += refusalLine(*file);
        }
    }
    outcome.json.insert(QStringLiteral("problems"), problems);
    outcome.exitCode = ExitCode::trouble;
    return outcome;
}

bool isAnyNameOf(const Field &field, const QStringList &names)
{
    return std::any_of(names.begin(), names.end(),
                       [&field](const QString &name) { return isNamed(field.path, name); });
}

QString linesOn(const Field &first, const Field &second)
{
    return QStringLiteral("%1 (%2)\n  - ").arg(first.title, first.path) + textOf(first.value)
        + QStringLiteral("\n  + ") + textOf(second.value) + QLatin1Char('\n');
}

QJsonObject toJson(const Field &first, const Field &second)
{
    return {{QStringLiteral("field"), first.path},
            {QStringLiteral("first"), first.value},
            {QStringLiteral("second"), second.value}};
}

} // namespace

Outcome compare(const QString &firstPath, const QString &secondPath, const QStringList &ignored)
{
    const BackupFile first(firstPath);
    const BackupFile second(secondPath);
    Outcome outcome;
    outcome.json = {{QStringLiteral("command"), QStringLiteral("diff")},
                    {QStringLiteral("files"), QJsonArray{firstPath, secondPath}}};
    if (first.refusal() || second.refusal()) {
        return refuse(outcome, first, second);
    }
    const QVector<Field> before = fieldsOf(first);
    const QVector<Field> after = fieldsOf(second);
    QJsonArray differences;
    for (int i = 0; i < before.size(); ++i) {
        if (before.at(i).value != after.at(i).value && !isAnyNameOf(before.at(i), ignored)) {
            outcome.output += linesOn(before.at(i), after.at(i));
            differences.append(toJson(before.at(i), after.at(i)));
        }
    }
    outcome.json.insert(QStringLiteral("same"), differences.isEmpty());
    outcome.json.insert(QStringLiteral("differences"), differences);
    outcome.exitCode = differences.isEmpty() ? ExitCode::good : ExitCode::notGood;
    return outcome;
}
