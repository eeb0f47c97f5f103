#include "host/hostoptions.h"

#include "host/versiontext.h"
#include "tests/support/testmain.h"

#include <QtTest>

namespace {

std::optional<HostOptions> parse(const QStringList &arguments, QString *problem = nullptr)
{
    QString ignored;
    return parseHostOptions(QStringList{QStringLiteral("veltra4-host")} + arguments,
                            problem ? problem : &ignored);
}

} // namespace

class TestHostOptions : public QObject
{
    Q_OBJECT

private slots:
    void nothingGivenYieldsTheDefaults()
    {
        const auto options = parse({});
        QVERIFY(options);
        QVERIFY(!options->isObserver);
        QVERIFY(!options->isDark);
        QCOMPARE(options->fontSize, 0);
        QCOMPARE(versionText(options->interfaceVersion), QStringLiteral("1.27.0"));
        QCOMPARE(versionText(options->ptVersion), QStringLiteral("4.2.0"));
        QCOMPARE(versionText(options->ctVersion), QStringLiteral("4.1.0"));
        QCOMPARE(options->systemModel, QString());
        QCOMPARE(options->hostVersion, QStringLiteral("v4.12.3"));
        QCOMPARE(options->latencyMs, 0);
        QCOMPARE(options->failureRules, QStringList());
        QVERIFY(!options->controller);
        QCOMPARE(options->stateFile, QString());
        QCOMPARE(options->tourDirectory, QString());
        QCOMPARE(options->pluginFile,
                 QCoreApplication::applicationDirPath()
                     + QStringLiteral("/ConfigurationsModule.so"));
    }

    void everyOptionIsTaken()
    {
        const auto options = parse(
            {"--observer", "--dark", "--interface-version", "1.9", "--pt-version", "v3.1.2",
             "--ct-version=5", "--model", "Tracker \"X\"", "--host-version", "v3.0", "--latency",
             "250", "--state", "lab.json", "--plugin", "/tmp/m.so", "--font-size", "14"});
        QVERIFY(options);
        QVERIFY(options->isObserver);
        QVERIFY(options->isDark);
        QCOMPARE(versionText(options->interfaceVersion), QStringLiteral("1.9"));
        QCOMPARE(options->interfaceVersion.micro, -1);
        QCOMPARE(versionText(options->ptVersion), QStringLiteral("3.1.2"));
        QCOMPARE(versionText(options->ctVersion), QStringLiteral("5"));
        QCOMPARE(options->systemModel, QStringLiteral("Tracker \"X\""));
        QCOMPARE(options->hostVersion, QStringLiteral("v3.0"));
        QCOMPARE(options->latencyMs, 250);
        QCOMPARE(options->fontSize, 14);
        QCOMPARE(options->stateFile, QStringLiteral("lab.json"));
        QCOMPARE(options->pluginFile, QStringLiteral("/tmp/m.so"));
    }

    void theControllerMayBeElsewhere()
    {
        const auto options = parse({"--controller", "[::1]:4711"});
        QVERIFY(options && options->controller);
        QCOMPARE(options->controller->host, QStringLiteral("::1"));
        QCOMPARE(int(options->controller->port), 4711);
    }

    void failureRulesAddUp()
    {
        const auto options = parse({"--fail", "3", "--fail", "config *"});
        QVERIFY(options);
        QCOMPARE(options->failureRules, QStringList({"3", "config *"}));
    }

    void tourNamesItsFolder()
    {
        const auto options = parse({"--tour", "pictures"});
        QVERIFY(options);
        QCOMPARE(options->tourDirectory, QStringLiteral("pictures"));
    }

    void wrongCommandLinesAreRefusedInOneLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("named");
        QTest::newRow("unknown option") << QStringList{"--bogus"} << "bogus";
        QTest::newRow("stray argument") << QStringList{"file.dat"} << "file.dat";
        QTest::newRow("value missing") << QStringList{"--state"} << "state";
        QTest::newRow("value empty") << QStringList{"--plugin="} << "--plugin";
        QTest::newRow("word as version") << QStringList{"--pt-version", "new"} << "--pt-version";
        QTest::newRow("four places") << QStringList{"--ct-version", "1.2.3.4"} << "1.2.3.4";
        QTest::newRow("dot at the end") << QStringList{"--ct-version", "1."} << "\"1.\"";
        QTest::newRow("number too large")
            << QStringList{"--interface-version", "1.99999999999"} << "--interface-version";
        QTest::newRow("word as latency") << QStringList{"--latency", "fast"} << "--latency";
        QTest::newRow("negative latency") << QStringList{"--latency", "-1"} << "--latency";
        QTest::newRow("endless latency") << QStringList{"--latency", "600001"} << "--latency";
        QTest::newRow("no font at all") << QStringList{"--font-size", "0"} << "--font-size";
        QTest::newRow("endless font") << QStringList{"--font-size", "73"} << "--font-size";
        QTest::newRow("tour of a kept state")
            << QStringList{"--tour", "x", "--state", "y"} << "--state";
        QTest::newRow("tour as observer")
            << QStringList{"--tour", "x", "--observer"} << "--observer";
        QTest::newRow("controller without port")
            << QStringList{"--controller", "tracker"} << "\"tracker\"";
        QTest::newRow("controller without name")
            << QStringList{"--controller", ":4711"} << "--controller";
        QTest::newRow("empty controller") << QStringList{"--controller="} << "--controller";
        QTest::newRow("state of a controller elsewhere")
            << QStringList{"--controller", "x:1", "--state", "y"} << "--state";
        QTest::newRow("latency of a controller elsewhere")
            << QStringList{"--controller", "x:1", "--latency", "1"} << "--latency";
        QTest::newRow("faults of a controller elsewhere")
            << QStringList{"--controller", "x:1", "--fail", "1"} << "--fail";
        QTest::newRow("tour of a controller elsewhere")
            << QStringList{"--controller", "x:1", "--tour", "y"} << "--tour";
    }

    void wrongCommandLinesAreRefusedInOneLine()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, named);
        QString problem;
        QVERIFY(!parse(arguments, &problem));
        QVERIFY2(problem.contains(named), qPrintable(problem));
        QVERIFY(!problem.contains(QLatin1Char('\n')));
    }

    void theFirstProblemIsTold()
    {
        QString problem;
        QVERIFY(!parse({"--latency", "x", "--pt-version", "y"}, &problem));
        QVERIFY2(problem.startsWith(QLatin1String("--pt-version")), qPrintable(problem));
    }
};

VELTRA4_TEST(TestHostOptions)
#include "tst_hostoptions.moc"
