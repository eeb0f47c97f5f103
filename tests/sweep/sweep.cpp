#include "tests/sweep/sweep.h"

#include "tests/sweep/rehearsal.h"
#include "tests/sweep/stage.h"
#include "tests/sweep/wronganswers.h"

#include <QTest>

#include <algorithm>

namespace {

constexpr int beyondAnyTimeoutMs = 3600 * 1000;

int totalPoints = 0;
int totalRuns = 0;

// What the list has to show of @p state, in the form of Table::lines().
QStringList listOf(const ControllerState &state)
{
    QVector<QPair<QString, QString>> rows; // description and line
    for (const Configuration &configuration : state.configurations) {
        const QString description = QString::fromLatin1(configuration.description);
        const bool isActive = configuration.identifier == state.activeIdentifier;
        rows.append({description,
                     (isActive ? "* " : QString())
                         + QStringList{description, QString::fromLatin1(configuration.owner),
                                       configuration.isLocked() ? "yes" : "no"}
                               .join(" | ")});
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const auto &left, const auto &right) { return left.first < right.first; });
    QStringList lines;
    for (const auto &row : qAsConst(rows)) {
        lines << row.second;
    }
    return lines;
}

bool isEverythingWanted()
{
    return qEnvironmentVariableIsSet("VELTRA4_SWEEP_ALL");
}

// All wrong answers to the i-th command, or one of them, which changes from command to command.
QByteArrayList wrongAnswersTo(const QVector<Exchange> &exchanges, int i)
{
    const QByteArrayList answers = wrongAnswersTo(exchanges.at(i));
    return isEverythingWanted() || answers.isEmpty() ? answers : answers.mid(i % answers.size(), 1);
}

// How many of the commands belong to the operation alone; all of them where it is the reading of
// the list.
int ownCommands(const QVector<Exchange> &exchanges)
{
    int reading = exchanges.size() - 1;
    while (reading > 0 && exchanges.at(reading).command != "config free_space") {
        --reading;
    }
    return reading > 0 && !isEverythingWanted() ? reading : exchanges.size();
}

QString lossIn(const Outcome &outcome, const Operation &operation)
{
    for (const Configuration &configuration : operation.before.configurations) {
        if (!operation.risked.contains(configuration.identifier)
            && !outcome.state.configurations.contains(configuration)) {
            return QStringLiteral("the configuration %1 is lost or changed")
                .arg(QString::fromLatin1(configuration.identifier));
        }
    }
    return {};
}

QString described(const Fault &fault)
{
    switch (fault.kind) {
    case Fault::Kind::Fail:
        return "failing";
    case Fault::Kind::Delay:
        return "without an answer";
    case Fault::Kind::Answer:
        break;
    }
    return QStringLiteral("answered with \"%1\"")
        .arg(QString::fromLatin1(fault.answer.toPercentEncoding(" '")));
}

QString described(const FaultPoint &faultPoint)
{
    return QStringLiteral("with command %1%2 %3: ")
        .arg(faultPoint.command)
        .arg(faultPoint.isLasting ? " and all after it" : QString(), described(faultPoint.fault));
}

/// Carries an operation out again and again.
class Sweeper
{
public:
    explicit Sweeper(const Operation &operation)
        : m_operation(operation)
    {
    }

    void befall(const Fault &fault, bool isLasting)
    {
        const int commands = undisturbed().size();
        for (int command = 1; command <= commands; ++command) {
            if (!isSurvived({command, fault, isLasting})) {
                return;
            }
            ++m_points;
        }
    }

    void answerWrongly()
    {
        const QVector<Exchange> exchanges = undisturbed();
        for (int i = 0; i < exchanges.size(); ++i) {
            const QByteArrayList answers = wrongAnswersTo(exchanges, i);
            for (const QByteArray &answer : answers) {
                if (!isSurvived({i + 1, {Fault::Kind::Answer, answer, 0}, false})) {
                    return;
                }
                ++m_points;
            }
            if (!answers.isEmpty() && !isAsItHasToBe({})) {
                return;
            }
        }
    }

    int points() const { return m_points; }
    int runs() const { return m_runs; }

private:
    /// What the operation sends when nothing goes wrong; nothing if that already is not as it has
    /// to be.
    QVector<Exchange> undisturbed()
    {
        if (!isAsItHasToBe({})) {
            return {};
        }
        const QVector<Exchange> exchanges = m_stage.transcript().exchanges();
        return exchanges.mid(0, ownCommands(exchanges));
    }

    /// False if no fault was met, or something was not as it has to be.
    bool isSurvived(const FaultPoint &faultPoint)
    {
        return isAsItHasToBe(faultPoint) && m_stage.wasFaultMet();
    }

    bool isAsItHasToBe(const std::optional<FaultPoint> &faultPoint)
    {
        ++m_runs;
        const QString problem = problemOf(faultPoint);
        if (!problem.isEmpty()) {
            const QString where = faultPoint ? described(*faultPoint) : "without a fault: ";
            QTest::qFail(qPrintable(where + problem), __FILE__, __LINE__);
        }
        return problem.isEmpty();
    }

    QString problemOf(const std::optional<FaultPoint> &faultPoint)
    {
        const Outcome actual = m_stage.perform(m_operation, faultPoint);
        Rehearsal rehearsal(m_operation, faultPoint, m_stage.transcript().newIdentifiers());
        m_operation.rehearse(rehearsal);
        QString problem = difference(actual, rehearsal.outcome());
        if (problem.isEmpty()) {
            problem = lossIn(actual, m_operation);
        }
        const QStringList listed = m_stage.listedNow();
        if (problem.isEmpty() && listed != listOf(actual.state)) {
            problem = QStringLiteral("afterwards the list shows\n    ") + listed.join("\n    ");
        }
        return problem;
    }

    const Operation &m_operation;
    Stage m_stage;
    int m_points = 0;
    int m_runs = 0;
};

} // namespace

void Sweep::addRows()
{
    QTest::addColumn<Misfortune>("misfortune");
    QTest::newRow("one command fails") << Misfortune::Failure;
    QTest::newRow("one answer is lost") << Misfortune::LostAnswer;
    QTest::newRow("the controller dies") << Misfortune::Death;
    QTest::newRow("one answer is wrong") << Misfortune::WrongAnswer;
}

void Sweep::addRowsOfVariant()
{
    if (isEverythingWanted()) {
        addRows();
        return;
    }
    QTest::addColumn<Misfortune>("misfortune");
    QTest::newRow("one command fails") << Misfortune::Failure;
}

void Sweep::run(const Operation &operation)
{
    QFETCH(Misfortune, misfortune);
    Sweeper sweeper(operation);
    switch (misfortune) {
    case Misfortune::Failure:
        sweeper.befall({}, false);
        break;
    case Misfortune::LostAnswer:
        sweeper.befall({Fault::Kind::Delay, {}, beyondAnyTimeoutMs}, false);
        break;
    case Misfortune::Death:
        sweeper.befall({}, true);
        break;
    case Misfortune::WrongAnswer:
        sweeper.answerWrongly();
        break;
    }
    QVERIFY(sweeper.points() > 0 || QTest::currentTestFailed());
    totalPoints += sweeper.points();
    totalRuns += sweeper.runs();
    qInfo("%d fault points swept in %d runs", sweeper.points(), sweeper.runs());
}

void Sweep::sayTotal()
{
    qInfo("in all %d fault points swept in %d runs", totalPoints, totalRuns);
}
