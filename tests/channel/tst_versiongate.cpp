#include "channel/versiongate.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <limits>

Q_DECLARE_METATYPE(Version)

class TestVersionGate : public QObject
{
    Q_OBJECT

private slots:
    void theGateOpensAtItsMinorVersion_data()
    {
        QTest::addColumn<Version>("given");
        QTest::addColumn<bool>("isOpen");
        constexpr int lowest = std::numeric_limits<int>::min();
        constexpr int highest = std::numeric_limits<int>::max();
        QTest::newRow("nothing given") << Version{-1, -1, -1} << false;
        QTest::newRow("0.99.99") << Version{0, 99, 99} << false;
        QTest::newRow("1 alone") << Version{1, -1, -1} << false;
        QTest::newRow("1.26.99") << Version{1, 26, 99} << false;
        QTest::newRow("1.27 alone") << Version{1, 27, -1} << true;
        QTest::newRow("1.27.0") << Version{1, 27, 0} << true;
        QTest::newRow("1.27.-2") << Version{1, 27, -2} << false;
        QTest::newRow("1.28.-2") << Version{1, 28, -2} << true;
        QTest::newRow("2 alone") << Version{2, -1, -1} << true;
        QTest::newRow("highest") << Version{highest, lowest, lowest} << true;
        QTest::newRow("lowest") << Version{lowest, highest, highest} << false;
    }

    void theGateOpensAtItsMinorVersion()
    {
        QFETCH(const Version, given);
        QFETCH(const bool, isOpen);
        QCOMPARE(VersionGate::isAtLeastOneDot(27, given), isOpen);
    }

    void everyFeatureHasItsVersion()
    {
        const auto features = [](int minor) {
            const Version given{1, minor, 0};
            return QList<bool>{VersionGate::hasLocks(given), VersionGate::hasTransfers(given),
                               VersionGate::importsBaseItem(given),
                               VersionGate::reportsFreeSpace(given)};
        };
        QCOMPARE(features(8), QList<bool>({false, false, false, false}));
        QCOMPARE(features(9), QList<bool>({true, false, false, false}));
        QCOMPARE(features(10), QList<bool>({true, false, false, false}));
        QCOMPARE(features(11), QList<bool>({true, true, false, false}));
        QCOMPARE(features(16), QList<bool>({true, true, false, false}));
        QCOMPARE(features(17), QList<bool>({true, true, true, false}));
        QCOMPARE(features(26), QList<bool>({true, true, true, false}));
        QCOMPARE(features(27), QList<bool>({true, true, true, true}));
    }
};

VELTRA4_TEST(TestVersionGate)
#include "tst_versiongate.moc"
