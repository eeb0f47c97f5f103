#include "tests/support/testmain.h"
#include "transfer/datestamp.h"

#include <QDate>
#include <QTest>

class TestDateStamp : public QObject
{
    Q_OBJECT

private slots:
    void removesTheDateOfAnEarlierSave_data()
    {
        QTest::addColumn<QString>("rest");
        const auto row = [](const char *description, const char *rest) {
            QTest::newRow(description) << rest;
        };
        row("L\"a\"b", "Lab");
        row("\"\"", "");

        row("\"copy of Lab\"", "Lab");
        row("copy of copy of Lab", "copy of Lab");
        row("copy of ", "");
        row("Lab copy of Lab", "Lab copy of Lab");

        row("\"copy of Lab 01-02-2020\"", "Lab");
        row("Lab 01-02-2020 03-04-2021", "Lab 01-02-2020");
        row("Lab  01-02-2020", "Lab ");
        row(" 01-02-2020", "");
        row("Lab 99-99-9999", "Lab");
        row("Lab 00-00-0000", "Lab");

        // Glued to something, which a date may be part of.
        row("Lab01-02-2020", "Lab00-00-0000");
        row("copy of 01-02-2020", "00-00-0000");
        row("Lab 101-02-2020", "Lab 100-00-0000");

        for (const char *unchanged :
             {"", "Lab", "Copy of Lab", "copy ofLab", " copy of Lab", "Lab 01-02-2020 east",
              "Lab 01-02-2020 ", "Lab 01-02-2020\n", "Lab 01-02-20201", "Lab 01-02-20",
              "Lab 1-02-2020", "Lab 12-123-2024", "Lab 12-1-2024", "Lab 2020-02-01",
              "Lab 01.02.2020"}) {
            row(unchanged, unchanged);
        }
    }

    void removesTheDateOfAnEarlierSave()
    {
        QTEST(DateStamp::removedFrom(QTest::currentDataTag()), "rest");
    }

    void todayIsDayMonthYear()
    {
        const QDate before = QDate::currentDate();
        const QString today = DateStamp::today();
        const QDate after = QDate::currentDate();
        const auto written = [](const QDate &date) {
            return QString::asprintf("%02d-%02d-%04d", date.day(), date.month(), date.year());
        };
        QVERIFY(today == written(before) || today == written(after));
    }
};

VELTRA4_TEST(TestDateStamp)
#include "tst_datestamp.moc"
