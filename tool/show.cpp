#include "tool/show.h"

#include "tool/backupfinder.h"
#include "tool/fieldtable.h"
#include "tool/judgement.h"
#include "tool/printable.h"
#include "tool/toolarguments.h"

#include <algorithm>

Outcome show(const ToolArguments &arguments)
{
    const QVector<Judgement> judgements = judgeAll(BackupFinder::filesIn(arguments.paths));
    Outcome outcome;
    QJsonArray objects;
    for (const Judgement &judgement : judgements) {
        QJsonObject object = toJson(judgement, QStringLiteral("show"));
        if (!judgement.refusal) {
            object.insert(QStringLiteral("backup"), FieldTable::json(judgement.fields));
            const QString title = QStringLiteral("%1:\n").arg(printable(judgement.path));
            outcome.output += outcome.output.isEmpty() ? QString() : QStringLiteral("\n");
            outcome.output += judgements.size() == 1 ? QString() : title;
            outcome.output += FieldTable::text(judgement.fields);
        }
        outcome.complaint += complaintAbout(judgement);
        outcome.exitCode = std::max(outcome.exitCode, exitCodeOf(judgement));
        objects.append(object);
    }
    outcome.json = toDocument(objects, arguments.paths);
    return outcome;
}
