#include "tool/diff.h"

#include "tool/backupfinder.h"
#include "tool/comparison.h"
#include "tool/folderdiff.h"
#include "tool/judgement.h"
#include "tool/newest.h"
#include "tool/printable.h"
#include "tool/toolarguments.h"

#include <QFileInfo>

namespace {

Outcome refusal(const QString &reason)
{
    Outcome outcome;
    outcome.exitCode = ExitCode::trouble;
    outcome.problem = reason;
    outcome.json = QJsonDocument(QJsonObject{{QStringLiteral("command"), QStringLiteral("diff")}});
    return outcome;
}

QString complaintsAbout(const QVector<Judgement> &judgements)
{
    QString lines;
    for (const Judgement &judgement : judgements) {
        lines += complaintAbout(judgement);
    }
    return lines;
}

// What cannot be compared must not pass for the same.
Outcome complain(const QVector<Judgement> &judgements)
{
    Outcome outcome;
    outcome.complaint = complaintsAbout(judgements);
    QJsonArray problems;
    QJsonArray files;
    for (const Judgement &judgement : judgements) {
        files.append(judgement.path);
        if (judgement.refusal) {
            problems.append(refusalJson(judgement));
        }
    }
    outcome.exitCode = problems.isEmpty() ? ExitCode::good : ExitCode::trouble;
    outcome.json = QJsonDocument(QJsonObject{{QStringLiteral("command"), QStringLiteral("diff")},
                                             {QStringLiteral("files"), files},
                                             {QStringLiteral("problems"), problems}});
    return outcome;
}

Outcome diffOfTwo(const Judgement &first, const Judgement &second, const QStringList &ignored)
{
    Outcome outcome = complain({first, second});
    if (outcome.exitCode != ExitCode::good) {
        return outcome;
    }
    const Comparison comparison = compare(first, second, ignored);
    QJsonObject json = outcome.json.object();
    json.remove(QStringLiteral("problems"));
    json.insert(QStringLiteral("same"), comparison.isSame());
    json.insert(QStringLiteral("differences"), comparison.json);
    outcome.json.setObject(json);
    outcome.exitCode = comparison.isSame() ? ExitCode::good : ExitCode::notGood;
    outcome.output = comparison.isSame() ? QStringLiteral("%1 and %2 say the same.\n")
                                               .arg(printable(first.path), printable(second.path))
                                         : comparison.text;
    return outcome;
}

// The two are named, since nobody has chosen them; files that are no good do not count.
Outcome diffOfControllers(const ToolArguments &arguments)
{
    const QVector<Judgement> all = judgeAll(BackupFinder::filesInOrAutomatic(arguments.paths));
    const QMap<QString, Judgement> newest = newestByController(all);
    Outcome outcome;
    for (const QString &controller : arguments.controllers) {
        if (!newest.contains(controller)) {
            outcome = refusal(QStringLiteral("There is no good backup of %1.").arg(controller));
            outcome.complaint = complaintsAbout(all);
            return outcome;
        }
    }
    const Judgement first = newest[arguments.controllers.at(0)];
    const Judgement second = newest[arguments.controllers.at(1)];
    outcome = diffOfTwo(first, second, arguments.ignored);
    outcome.complaint = complaintsAbout(all);
    if (outcome.exitCode == ExitCode::notGood) {
        outcome.output.prepend(
            QStringLiteral("- %1\n+ %2\n").arg(printable(first.path), printable(second.path)));
    }
    return outcome;
}

} // namespace

Outcome diff(const ToolArguments &arguments)
{
    if (!arguments.controllers.isEmpty()) {
        return diffOfControllers(arguments);
    }
    const QString &first = arguments.paths.at(0);
    const QString &second = arguments.paths.at(1);
    const bool isFolder = QFileInfo(first).isDir();
    if (isFolder != QFileInfo(second).isDir()) {
        return refusal(QStringLiteral("diff wants two files or two folders."));
    }
    return isFolder ? diffOfFolders(first, second, arguments.ignored)
                    : diffOfTwo(judge(first), judge(second), arguments.ignored);
}
