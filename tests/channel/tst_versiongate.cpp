#include "channel/versiongate.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <limits>

Q_DECLARE_METATYPE(Version)

namespace {

Version version(int major, int minor, int micro)
{
    Version made;
    made.major = major;
    made.minor = minor;
    made.micro = micro;
    return made;
}

} // namespace

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
        QTest::newRow("nothing given") << version(-1, -1, -1) << false;
        QTest::newRow("0.99.99") << version(0, 99, 99) << false;
        QTest::newRow("1 alone") << version(1, -1, -1) << false;
        QTest::newRow("1.26.0") << version(1, 26, 0) << false;
        QTest::newRow("1.26.99") << version(1, 26, 99) << false;
        QTest::newRow("1.27 alone") << version(1, 27, -1) << true;
        QTest::newRow("1.27.0") << version(1, 27, 0) << true;
        QTest::newRow("1.27.1") << version(1, 27, 1) << true;
        QTest::newRow("1.27.highest") << version(1, 27, highest) << true;
        QTest::newRow("1.27.-2") << version(1, 27, -2) << false;
        QTest::newRow("1.27.lowest") << version(1, 27, lowest) << false;
        QTest::newRow("1.28.-2") << version(1, 28, -2) << true;
        QTest::newRow("2 alone") << version(2, -1, -1) << true;
        QTest::newRow("2.0.0") << version(2, 0, 0) << true;
        QTest::newRow("2.0.-2") << version(2, 0, -2) << true;
        QTest::newRow("highest") << version(highest, lowest, lowest) << true;
        QTest::newRow("lowest") << version(lowest, highest, highest) << false;
    }

    void theGateOpensAtItsMinorVersion()
    {
        QFETCH(const Version, given);
        QFETCH(const bool, isOpen);
        QCOMPARE(VersionGate::isAtLeastOneDot(27, given), isOpen);
    }

    void everyFeatureHasItsVersion_data()
    {
        QTest::addColumn<int>("minor");
        QTest::addColumn<int>("features");
        QTest::newRow("1.8") << 8 << 0;
        QTest::newRow("1.9") << 9 << 1;
        QTest::newRow("1.10") << 10 << 1;
        QTest::newRow("1.11") << 11 << 2;
        QTest::newRow("1.16") << 16 << 2;
        QTest::newRow("1.17") << 17 << 3;
        QTest::newRow("1.26") << 26 << 3;
        QTest::newRow("1.27") << 27 << 4;
    }

    void everyFeatureHasItsVersion()
    {
        QFETCH(const int, minor);
        QFETCH(const int, features);
        const Version given = version(1, minor, 0);
        QCOMPARE(VersionGate::hasLocks(given), features >= 1);
        QCOMPARE(VersionGate::hasTransfers(given), features >= 2);
        QCOMPARE(VersionGate::importsBaseItem(given), features >= 3);
        QCOMPARE(VersionGate::reportsFreeSpace(given), features >= 4);
    }
};

VELTRA4_TEST(TestVersionGate)
#include "tst_versiongate.moc"
