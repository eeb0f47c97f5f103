#include "backup/version.h"
#include "tests/support/testmain.h"

#include <QTest>

namespace {

QString describe(const Version &version)
{
    return QStringLiteral("%1.%2.%3").arg(version.major).arg(version.minor).arg(version.micro);
}

} // namespace

class TestVersion : public QObject
{
    Q_OBJECT

private slots:
    void isParsed_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("isVersion");
        const auto row = [](const char *text, const char *expected, bool isVersion) {
            QTest::newRow(qstrlen(text) > 0 ? text : "(nothing)")
                << QString::fromUtf8(text) << QString::fromLatin1(expected) << isVersion;
        };
        row("V2.4.1-beta", "2.4.1", true);
        row("v1.17", "1.17.-1", true);
        row("x", "0.-1.-1", false);
        row("", "0.-1.-1", false);
        row("1.0.0", "1.0.0", true);
        row("7", "7.-1.-1", true);
        row("vv1", "0.-1.-1", false);
        row("v2.x", "2.0.-1", false);
        row("v2.3.x", "2.3.0", false);
        row("1..2", "1.0.-1", false);
        row("1.2.3.4", "1.2.3", true);
        row("1.2.3 beta", "1.2.3", true);
        row("1.2-3.4", "1.2.-1", true);
        row("-1.2", "0.-1.-1", false);
        row("v 1 . 2", "1.2.-1", true);
        row("1,2", "0.-1.-1", false);
        row("2147483647.2147483647.2147483647", "2147483647.2147483647.2147483647", true);
        row("2147483648", "0.-1.-1", false);
        row("1.2.3\u00e4", "1.2.0", false);
    }

    void isParsed()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, expected);
        QFETCH(const bool, isVersion);
        bool ok = !isVersion;
        QCOMPARE(describe(parseVersion(text, &ok)), expected);
        QCOMPARE(ok, isVersion);
    }

    void isParsedWithoutAskingWhetherItIsOne()
    {
        QCOMPARE(describe(parseVersion("v4.2")), "4.2.-1");
        QCOMPARE(describe(parseVersion("x")), "0.-1.-1");
    }

    void isWrittenUpToTheFirstPlaceThatIsMissing()
    {
        QCOMPARE(versionToString({4, 2, 13}), "v4.2.13");
        QCOMPARE(versionToString({0, 0, 0}), "v0.0.0");
        QCOMPARE(versionToString({4, 2, -1}), "v4.2");
        QCOMPARE(versionToString({4, -1, 3}), "v4");
        QCOMPARE(versionToString({-1, 2, 3}), "");
    }

    void isOrderedPlaceByPlace()
    {
        const QList<Version> ascending{{-1, -1, -1}, {-1, 5, 5}, {0, -1, -1}, {0, 0, -1},
                                       {0, 0, 0},    {0, 9, 9},  {1, -1, 7},  {1, 2, -1},
                                       {1, 2, 0},    {1, 2, 3},  {1, 10, 0},  {2, 0, 0}};
        for (int i = 0; i < ascending.size(); ++i) {
            for (int j = 0; j < ascending.size(); ++j) {
                QCOMPARE(ascending.at(i) < ascending.at(j), i < j);
                QCOMPARE(ascending.at(i) == ascending.at(j), i == j);
            }
        }
    }

    void hasNoPlaceGivenByDefault() { QCOMPARE(describe(Version()), "-1.-1.-1"); }
};

VELTRA4_TEST(TestVersion)
#include "tst_version.moc"
