#include "tool/folderdiff.h"

#include "tool/backupfinder.h"
#include "tool/comparison.h"
#include "tool/newest.h"
#include "tool/printable.h"

#include <algorithm>

namespace {

/// Goes through the controllers one by one.
class FolderDiff
{
public:
    FolderDiff(const QString &first, const QString &second, const QStringList &ignored)
        : m_folders{first, second}
        , m_ignored(ignored + QStringList{QString::fromLatin1(FieldPath::creationDate)})
    {
    }

    Outcome run();

private:
    QMap<QString, Judgement> newestIn(const QString &folder);
    void report(const QString &controller, const Judgement &first, const Judgement &second);
    void reportOnlyIn(const QString &folder, const QString &controller);
    void report(const QString &controller, const QString &verdict, const Comparison &comparison);

    const QStringList m_folders;
    const QStringList m_ignored;
    Outcome m_outcome;
    QJsonArray m_controllers;
    QJsonArray m_problems;
};

Outcome FolderDiff::run()
{
    const QMap<QString, Judgement> before = newestIn(m_folders.at(0));
    const QMap<QString, Judgement> after = newestIn(m_folders.at(1));
    QMap<QString, Judgement> either = before;
    either.insert(after);
    for (auto one = either.cbegin(); one != either.cend(); ++one) {
        const QString &controller = one.key();
        if (before.contains(controller) && after.contains(controller)) {
            report(controller, before[controller], after[controller]);
        } else {
            reportOnlyIn(m_folders.at(before.contains(controller) ? 0 : 1), controller);
        }
    }
    m_outcome.json =
        QJsonDocument(QJsonObject{{QStringLiteral("command"), QStringLiteral("diff")},
                                  {QStringLiteral("files"), QJsonArray::fromStringList(m_folders)},
                                  {QStringLiteral("same"), m_outcome.exitCode == ExitCode::good},
                                  {QStringLiteral("controllers"), m_controllers},
                                  {QStringLiteral("problems"), m_problems}});
    return m_outcome;
}

QMap<QString, Judgement> FolderDiff::newestIn(const QString &folder)
{
    const QVector<Judgement> judgements = judgeAll(BackupFinder::filesIn({folder}));
    for (const Judgement &judgement : judgements) {
        m_outcome.complaint += complaintAbout(judgement);
        if (judgement.refusal) {
            m_outcome.exitCode = ExitCode::trouble;
            m_problems.append(refusalJson(judgement));
        }
    }
    return newestByController(judgements);
}

void FolderDiff::report(const QString &controller, const Judgement &first, const Judgement &second)
{
    const Comparison comparison = compare(first, second, m_ignored);
    const QString verdict = comparison.isSame() ? QStringLiteral("unchanged from %1 to %2")
                                                : QStringLiteral("changed between %1 and %2");
    report(controller, verdict.arg(timeTextOf(first), timeTextOf(second)), comparison);
}

void FolderDiff::reportOnlyIn(const QString &folder, const QString &controller)
{
    Comparison comparison;
    comparison.json.append(QJsonObject{{QStringLiteral("onlyIn"), folder}});
    report(controller, QStringLiteral("only in ") + folder, comparison);
}

void FolderDiff::report(const QString &controller, const QString &verdict,
                        const Comparison &comparison)
{
    m_outcome.output += lineAbout(controller, verdict) + comparison.text;
    m_controllers.append(QJsonObject{{QStringLiteral("controller"), controller},
                                     {QStringLiteral("same"), comparison.isSame()},
                                     {QStringLiteral("differences"), comparison.json}});
    if (!comparison.isSame()) {
        m_outcome.exitCode = std::max(m_outcome.exitCode, ExitCode::notGood);
    }
}

} // namespace

Outcome diffOfFolders(const QString &first, const QString &second, const QStringList &ignored)
{
    return FolderDiff(first, second, ignored).run();
}
