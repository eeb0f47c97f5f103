#include "tests/support/testmain.h"
#include "tool/age.h"

#include <QDateTime>
#include <QTest>

class TestAge : public QObject
{
    Q_OBJECT

private slots:
    void readsAges()
    {
        const QVector<QPair<const char *, qint64>> ages{{"0m", 0},      {"30m", 1800},
                                                        {"12h", 43200}, {"2d", 172800},
                                                        {"1w", 604800}, {"999999w", 604799395200}};
        for (const auto &[text, seconds] : ages) {
            QCOMPARE(Age::parse(text).value_or(-1), seconds);
        }
    }

    void refusesEverythingElse()
    {
        for (const char *text :
             {"", "2", "d", "2D", "2 d", "-2d", "2d ", "2d\n", "1.5d", "2y", "1000000w", "d2"}) {
            QVERIFY2(!Age::parse(text), text);
        }
    }

    void tellsWhatIsYoungerThanAnHour()
    {
        const auto isYounger = [](const char *made) {
            const QDateTime now = QDateTime::fromString("2024-03-05T14:00:00", Qt::ISODate);
            return Age::isYounger(QDateTime::fromString(made, Qt::ISODate), 3600, now);
        };
        QVERIFY(isYounger("2024-03-05T14:00:00"));
        QVERIFY(isYounger("2024-03-05T13:00:01"));
        QVERIFY(!isYounger("2024-03-05T13:00:00"));
        QVERIFY(!isYounger("1999-03-05T13:00:00"));
        QVERIFY(isYounger("2024-03-06T14:00:00"));  // by another clock
        QVERIFY(!isYounger("2024-03-06T14:00:01")); // by a wrong one
        QVERIFY(!isYounger("no time"));
    }
};

VELTRA4_TEST(TestAge)
#include "tst_age.moc"
