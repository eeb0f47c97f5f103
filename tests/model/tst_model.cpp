#include "tests/model/sequence.h"
#include "tests/support/testmain.h"

#include <QTest>

namespace {

constexpr int defaultSequences = 200;
constexpr int sequencesPerBlock = 50; // a block is what the test's own time limit counts for

int fromEnvironment(const char *variable, int otherwise)
{
    bool ok = false;
    const int number = qEnvironmentVariableIntValue(variable, &ok);
    return ok && number > 0 ? number : otherwise;
}

} // namespace

/// Random sequences against the model, as many as VELTRA4_MODEL_SEQUENCES says, the first of them
/// with the seed VELTRA4_MODEL_SEED.
class TestModel : public QObject
{
    Q_OBJECT

private slots:
    void whatUsersSeeIsWhatTheRulesSay_data()
    {
        QTest::addColumn<int>("firstSeed");
        QTest::addColumn<int>("count");
        int seed = fromEnvironment("VELTRA4_MODEL_SEED", 1);
        int left = fromEnvironment("VELTRA4_MODEL_SEQUENCES", defaultSequences);
        while (left > 0) {
            const int count = qMin(left, sequencesPerBlock);
            QTest::addRow("seeds %d to %d", seed, seed + count - 1) << seed << count;
            seed += count;
            left -= count;
        }
    }

    void whatUsersSeeIsWhatTheRulesSay()
    {
        QFETCH(const int, firstSeed);
        QFETCH(const int, count);
        for (int seed = firstSeed; seed < firstSeed + count; ++seed) {
            Sequence sequence(static_cast<quint32>(seed));
            sequence.run();
            ++m_sequences;
            m_actions += sequence.actions().size();
            m_faults += sequence.faultCount();
            if (!sequence.problem().isEmpty()) {
                const QString report =
                    QStringLiteral("%1\n\nafter:\n  %2\n\nAgain: ./dev model 1 %3")
                        .arg(sequence.problem(), sequence.actions().join("\n  "),
                             QString::number(seed));
                QFAIL(qPrintable(report));
            }
        }
    }

    void cleanupTestCase()
    {
        qInfo("%d sequences, %d actions, %d of them with a fault", m_sequences, m_actions,
              m_faults);
    }

private:
    int m_sequences = 0;
    int m_actions = 0;
    int m_faults = 0;
};

VELTRA4_TEST(TestModel)
#include "tst_model.moc"
