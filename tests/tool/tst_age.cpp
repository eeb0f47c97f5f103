#include "tests/support/testmain.h"
#include "tool/age.h"

#include <QDateTime>
#include <QtTest>

class TestAge : public QObject
{
    Q_OBJECT

private slots:
    void readsAges_data()
    {
        QTest::addColumn<qint64>("seconds");
        QTest::newRow("0m") << qint64(0);
        QTest::newRow("30m") << qint64(1800);
        QTest::newRow("12h") << qint64(43200);
        QTest::newRow("2d") << qint64(172800);
        QTest::newRow("1w") << qint64(604800);
        QTest::newRow("999999w") << qint64(604799395200);
    }

    void readsAges()
    {
        const std::optional<qint64> age = Age::parse(QTest::currentDataTag());
        QVERIFY(age);
        QTEST(*age, "seconds");
    }

    void refusesEverythingElse_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text :
             {"", "2", "d", "2D", "2 d", "-2d", "2d ", "2d\n", "1.5d", "2y", "1000000w", "d2"}) {
            QTest::newRow(text) << QString(text);
        }
    }

    void refusesEverythingElse()
    {
        QFETCH(const QString, text);
        QVERIFY(!Age::parse(text));
    }

    void tellsWhatIsYounger_data()
    {
        QTest::addColumn<QString>("made");
        QTest::addColumn<bool>("isYounger"); // than an hour
        QTest::newRow("now") << "2024-03-05T14:00:00" << true;
        QTest::newRow("just so") << "2024-03-05T13:00:01" << true;
        QTest::newRow("no more") << "2024-03-05T13:00:00" << false;
        QTest::newRow("long ago") << "1999-03-05T13:00:00" << false;
        QTest::newRow("by another clock") << "2024-03-06T14:00:00" << true;
        QTest::newRow("by a wrong clock") << "2024-03-06T14:00:01" << false;
    }

    void tellsWhatIsYounger()
    {
        QFETCH(const QString, made);
        const auto time = [](const QString &text) {
            return QDateTime::fromString(text, Qt::ISODate);
        };
        QTEST(Age::isYounger(time(made), 3600, time("2024-03-05T14:00:00")), "isYounger");
    }

    void knowsNoAgeWithoutATime()
    {
        QVERIFY(!Age::isYounger(QDateTime(), 3600, QDateTime::currentDateTime()));
    }
};

VELTRA4_TEST(TestAge)
#include "tst_age.moc"
