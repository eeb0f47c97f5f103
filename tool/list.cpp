#include "tool/list.h"

#include "tool/backupfinder.h"
#include "tool/fieldtable.h"
#include "tool/judgement.h"
#include "tool/table.h"
#include "tool/toolarguments.h"

#include <algorithm>

namespace {

QString wordFor(const Judgement &judgement)
{
    if (!judgement.refusal) {
        return judgement.warnings.isEmpty() ? QStringLiteral("good") : QStringLiteral("empty");
    }
    return exitCodeOf(judgement) == ExitCode::notGood ? QStringLiteral("refused")
                                                      : QStringLiteral("unreadable");
}

Terminal::Colour colourOf(const Judgement &judgement)
{
    if (judgement.refusal) {
        return Terminal::Colour::Red;
    }
    return judgement.warnings.isEmpty() ? Terminal::Colour::Green : Terminal::Colour::Yellow;
}

QString sizeTextOf(const Judgement &judgement)
{
    const QJsonValue data = valueAt(judgement.fields, FieldPath::configData);
    return data.isUndefined() ? QString() : QString::number(sizeOf(data));
}

Table::Row rowOf(const Judgement &judgement)
{
    const auto text = [&judgement](const char *path) {
        return valueAt(judgement.fields, path).toString();
    };
    return {{timeTextOf(judgement), text(FieldPath::name), text(FieldPath::serial),
             text(FieldPath::systemModel), text(FieldPath::ptVersion), text(FieldPath::ctVersion),
             sizeTextOf(judgement), wordFor(judgement), judgement.path},
            colourOf(judgement)};
}

QStringList titles()
{
    return {QStringLiteral("CREATED"), QStringLiteral("CONTROLLER"), QStringLiteral("SERIAL"),
            QStringLiteral("MODEL"),   QStringLiteral("TRACKING"),   QStringLiteral("FIRMWARE"),
            QStringLiteral("BYTES"),   QStringLiteral("VERDICT"),    QStringLiteral("FILE")};
}

bool isWanted(const Judgement &judgement, const QStringList &controllers)
{
    return judgement.refusal || controllers.isEmpty()
        || controllers.contains(controllerOf(judgement));
}

// Where times are the same or not known, the order is that of the names.
void sortByTime(QVector<Judgement> *judgements)
{
    std::stable_sort(
        judgements->begin(), judgements->end(), [](const Judgement &left, const Judgement &right) {
            return right.refusal ? !left.refusal : !left.refusal && timeOf(right) < timeOf(left);
        });
}

QJsonObject jsonOf(const Judgement &judgement)
{
    QJsonObject object = toJson(judgement, QStringLiteral("list"));
    object.insert(QStringLiteral("verdict"), wordFor(judgement));
    if (!judgement.refusal) {
        object.insert(QStringLiteral("backup"), FieldTable::json(judgement.fields));
    }
    return object;
}

} // namespace

Outcome list(const ToolArguments &arguments)
{
    QVector<Judgement> judgements = judgeAll(BackupFinder::filesInOrAutomatic(arguments.paths));
    sortByTime(&judgements);
    Outcome outcome;
    QJsonArray objects;
    QVector<Table::Row> rows;
    for (const Judgement &judgement : qAsConst(judgements)) {
        if (isWanted(judgement, arguments.controllers)) {
            rows.append(rowOf(judgement));
            objects.append(jsonOf(judgement));
            outcome.complaint += complaintAbout(judgement);
            outcome.exitCode = std::max(outcome.exitCode, exitCodeOf(judgement));
        }
    }
    outcome.output = Table::text(titles(), rows);
    outcome.json = QJsonDocument(objects);
    return outcome;
}
