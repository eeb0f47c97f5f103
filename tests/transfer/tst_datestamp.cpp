#include "tests/support/testmain.h"
#include "transfer/datestamp.h"

#include <QDate>
#include <QtTest>

class TestDateStamp : public QObject
{
    Q_OBJECT

private slots:
    void removesTheDateOfAnEarlierSave_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addColumn<QString>("rest");
        QTest::newRow("nothing to remove") << "Lab"
                                           << "Lab";
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("quotes around") << "\"Lab\""
                                       << "Lab";
        QTest::newRow("quotes inside") << "L\"a\"b"
                                       << "Lab";
        QTest::newRow("only quotes") << "\"\""
                                     << "";

        QTest::newRow("copy") << "copy of Lab"
                              << "Lab";
        QTest::newRow("copy in quotes") << "\"copy of Lab\""
                                        << "Lab";
        QTest::newRow("copy of a copy") << "copy of copy of Lab"
                                        << "copy of Lab";
        QTest::newRow("copy of nothing") << "copy of "
                                         << "";
        QTest::newRow("copy, capital letter") << "Copy of Lab"
                                              << "Copy of Lab";
        QTest::newRow("copy, no blank") << "copy ofLab"
                                        << "copy ofLab";
        QTest::newRow("copy, blank in front") << " copy of Lab"
                                              << " copy of Lab";
        QTest::newRow("copy in the middle") << "Lab copy of Lab"
                                            << "Lab copy of Lab";

        QTest::newRow("date") << "Lab 01-02-2020"
                              << "Lab";
        QTest::newRow("date of a copy") << "copy of Lab 01-02-2020"
                                        << "Lab";
        QTest::newRow("date in quotes") << "\"copy of Lab 01-02-2020\""
                                        << "Lab";
        QTest::newRow("two dates") << "Lab 01-02-2020 03-04-2021"
                                   << "Lab 01-02-2020";
        QTest::newRow("two blanks") << "Lab  01-02-2020"
                                    << "Lab ";
        QTest::newRow("date after nothing but a blank") << " 01-02-2020"
                                                        << "";
        QTest::newRow("impossible date") << "Lab 99-99-9999"
                                         << "Lab";
        QTest::newRow("placeholder") << "Lab 00-00-0000"
                                     << "Lab";
        QTest::newRow("date in the middle") << "Lab 01-02-2020 east"
                                            << "Lab 01-02-2020 east";
        QTest::newRow("blank behind") << "Lab 01-02-2020 "
                                      << "Lab 01-02-2020 ";
        QTest::newRow("line feed behind") << "Lab 01-02-2020\n"
                                          << "Lab 01-02-2020\n";

        QTest::newRow("glued date") << "Lab01-02-2020"
                                    << "Lab00-00-0000";
        QTest::newRow("only a date") << "01-02-2020"
                                     << "00-00-0000";
        QTest::newRow("copy of only a date") << "copy of 01-02-2020"
                                             << "00-00-0000";
        QTest::newRow("digit before the date") << "Lab 101-02-2020"
                                               << "Lab 100-00-0000";
        QTest::newRow("digit behind the date") << "Lab 01-02-20201"
                                               << "Lab 01-02-20201";

        QTest::newRow("short year") << "Lab 01-02-20"
                                    << "Lab 01-02-20";
        QTest::newRow("short day") << "Lab 1-02-2020"
                                   << "Lab 1-02-2020";
        QTest::newRow("long month") << "Lab 12-123-2024"
                                    << "Lab 12-123-2024";
        QTest::newRow("short month") << "Lab 12-1-2024"
                                     << "Lab 12-1-2024";
        QTest::newRow("other order") << "Lab 2020-02-01"
                                     << "Lab 2020-02-01";
        QTest::newRow("dots") << "Lab 01.02.2020"
                              << "Lab 01.02.2020";
    }

    void removesTheDateOfAnEarlierSave()
    {
        QFETCH(const QString, description);
        QFETCH(const QString, rest);
        QCOMPARE(DateStamp::removedFrom(description), rest);
    }

    void todayIsDayMonthYear()
    {
        const QDate before = QDate::currentDate();
        const QString today = DateStamp::today();
        const QDate after = QDate::currentDate();
        const auto written = [](const QDate &date) {
            return QStringLiteral("%1-%2-%3")
                .arg(date.day(), 2, 10, QLatin1Char('0'))
                .arg(date.month(), 2, 10, QLatin1Char('0'))
                .arg(date.year(), 4, 10, QLatin1Char('0'));
        };
        QVERIFY(today == written(before) || today == written(after));
    }
};

VELTRA4_TEST(TestDateStamp)
#include "tst_datestamp.moc"
