#include "channel/identifiers.h"
#include "tests/support/testmain.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

class TestIdentifiers : public QObject
{
    Q_OBJECT

private slots:
    void aStampIsTheLocalTime()
    {
        const QDateTime before = QDateTime::currentDateTime();
        const QString stamp = Identifiers::newStamp();
        const QDateTime after = QDateTime::currentDateTime();

        QDateTime time = QDateTime::fromString(stamp.left(14), "yyyyMMddHHmmss");
        time = time.addMSecs(stamp.mid(14).toInt());
        QVERIFY(time >= before);
        QVERIFY(time <= after);
    }

    void stampsNeverRepeat()
    {
        // More than there are milliseconds in a second: all of their values occur, short ones too.
        constexpr int count = 1100;
        const QRegularExpression form(R"(\A\d{14}(0|[1-9]\d{0,2})\z)");
        QSet<QString> stamps;
        for (int i = 0; i < count; ++i) {
            const QString stamp = Identifiers::newStamp();
            QVERIFY2(form.match(stamp).hasMatch(), qPrintable(stamp));
            stamps.insert(stamp);
        }
        QCOMPARE(stamps.size(), count);
    }

    void anIdentifierIsAStampWithAPrefix()
    {
        const QString identifier = Identifiers::newIdentifier();
        const QString next = Identifiers::newIdentifier();
        const QRegularExpression form(R"(\Aconfig\d{15,17}\z)");
        QVERIFY2(form.match(identifier).hasMatch(), qPrintable(identifier));
        QVERIFY(identifier != next);
    }

    void theReservedIdentifiersAreTheControllers()
    {
        QCOMPARE(Identifiers::standard, "standard");
        QCOMPARE(Identifiers::base, "__base");
    }
};

VELTRA4_TEST(TestIdentifiers)
#include "tst_identifiers.moc"
