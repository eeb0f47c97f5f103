#include "tool/verification.h"

#include "tool/age.h"
#include "tool/backupfinder.h"
#include "tool/fitness.h"
#include "tool/judgement.h"
#include "tool/printable.h"
#include "tool/toolarguments.h"

#include <algorithm>

namespace {

/// Goes through the judgements one by one.
class Verification
{
public:
    explicit Verification(const ToolArguments &arguments)
        : m_arguments(arguments)
    {
    }

    Outcome run();

private:
    bool isWatch() const { return m_arguments.maxAge || !m_arguments.controllers.isEmpty(); }
    bool isOfOtherController(const Judgement &judgement) const;
    bool isYoung(const Judgement &judgement) const;
    void report(const Judgement &judgement);
    void reportFitness(const Judgement &judgement);
    void answerWatch();
    QString whatIsWatched() const;

    const ToolArguments &m_arguments;
    const QDateTime m_now = QDateTime::currentDateTime();
    Outcome m_outcome;
    QJsonArray m_json;
    bool m_hasWatched = false; ///< one that is good and young enough
    QString m_newest;          ///< when the newest good one was made
};

Outcome Verification::run()
{
    const QVector<Judgement> judgements =
        judgeAll(BackupFinder::filesInOrAutomatic(m_arguments.paths));
    for (const Judgement &judgement : judgements) {
        if (!isOfOtherController(judgement)) {
            report(judgement);
        }
    }
    if (!m_outcome.output.isEmpty()) {
        m_outcome.output += QStringLiteral(
            "Whether the configuration data inside are whole, only a controller can tell.\n");
    }
    if (isWatch()) {
        answerWatch();
    }
    m_outcome.json = toDocument(m_json, m_arguments.paths);
    return m_outcome;
}

// Of a refused file it is not known.
bool Verification::isOfOtherController(const Judgement &judgement) const
{
    return !judgement.refusal && !m_arguments.controllers.isEmpty()
        && !m_arguments.controllers.contains(controllerOf(judgement));
}

bool Verification::isYoung(const Judgement &judgement) const
{
    return !m_arguments.maxAge || Age::isYounger(timeOf(judgement), *m_arguments.maxAge, m_now);
}

void Verification::report(const Judgement &judgement)
{
    m_outcome.complaint += complaintAbout(judgement);
    m_outcome.exitCode = std::max(m_outcome.exitCode, exitCodeOf(judgement));
    m_json.append(toJson(judgement, QStringLiteral("verify")));
    if (!judgement.refusal) {
        m_outcome.output +=
            lineAbout(judgement.path, QStringLiteral("A restore would accept this backup."));
        reportFitness(judgement);
    }
}

void Verification::reportFitness(const Judgement &judgement)
{
    const QStringList misfits = Fitness::misfits(judgement, m_arguments.traits);
    m_outcome.output += lineAbout(judgement.path, Fitness::textFor(judgement));
    QJsonObject json = m_json.last().toObject();
    json.insert(QStringLiteral("fits"), Fitness::jsonFor(judgement));
    json.insert(QStringLiteral("misfits"), QJsonArray::fromStringList(misfits));
    m_json.replace(m_json.size() - 1, json);
    for (const QString &misfit : misfits) {
        m_outcome.complaint += lineAbout(judgement.path, misfit);
        m_outcome.exitCode = std::max(m_outcome.exitCode, ExitCode::notGood);
    }
    if (misfits.isEmpty()) {
        m_hasWatched = m_hasWatched || isYoung(judgement);
        m_newest = std::max(m_newest, timeTextOf(judgement));
    }
}

// One good backup is enough; what else there is has been complained of.
void Verification::answerWatch()
{
    if (m_hasWatched) {
        m_outcome.exitCode = ExitCode::good;
        return;
    }
    m_outcome.exitCode = std::max(m_outcome.exitCode, ExitCode::notGood);
    m_outcome.problem = QStringLiteral("There is no good backup%1.").arg(whatIsWatched());
    if (!m_newest.isEmpty()) {
        m_outcome.problem += QStringLiteral(" The newest was made at %1.").arg(m_newest);
    }
}

QString Verification::whatIsWatched() const
{
    QString text;
    if (!m_arguments.controllers.isEmpty()) {
        text += QStringLiteral(" of ")
            + printable(m_arguments.controllers.join(QStringLiteral(" or ")));
    }
    if (m_arguments.maxAge) {
        text += QStringLiteral(" newer than ") + m_arguments.maxAgeText;
    }
    return text;
}

} // namespace

Outcome verify(const ToolArguments &arguments)
{
    return Verification(arguments).run();
}
