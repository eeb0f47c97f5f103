#include "host/hostoptions.h"

#include "host/versiontext.h"
#include "tests/support/testmain.h"

#include <QTest>

class TestHostOptions : public QObject
{
    Q_OBJECT

private:
    static HostOptions parsed(const QStringList &arguments)
    {
        QString problem;
        const auto options = parseHostOptions(QStringList{"veltra4-host"} + arguments, &problem);
        if (!options) {
            QTest::qFail(qPrintable(problem), __FILE__, __LINE__);
        }
        return options.value_or(HostOptions());
    }

    static void expectRefusal(const QStringList &arguments, const QString &expected)
    {
        QString problem;
        QVERIFY(!parseHostOptions(QStringList{"veltra4-host"} + arguments, &problem));
        QCOMPARE(problem, expected);
    }

private slots:
    void nothingGivenYieldsTheDefaults()
    {
        const HostOptions options = parsed({});
        QVERIFY(!options.isObserver);
        QVERIFY(!options.isDark);
        QCOMPARE(options.fontSize, 0);
        QCOMPARE(versionText(options.interfaceVersion), "1.27.0");
        QCOMPARE(versionText(options.ptVersion), "4.2.0");
        QCOMPARE(versionText(options.ctVersion), "4.1.0");
        QCOMPARE(options.systemModel, "");
        QCOMPARE(options.hostVersion, "v4.12.3");
        QCOMPARE(options.latencyMs, 0);
        QCOMPARE(options.failureRules, QStringList());
        QVERIFY(!options.controller);
        QCOMPARE(options.stateFile, "");
        QCOMPARE(options.tourDirectory, "");
        QCOMPARE(options.pluginFile,
                 QCoreApplication::applicationDirPath() + "/ConfigurationsModule.so");
    }

    void everyOptionIsTaken()
    {
        const HostOptions options = parsed({"--observer",
                                            "--dark",
                                            "--interface-version",
                                            "1.9",
                                            "--pt-version",
                                            "v3.1.2",
                                            "--ct-version=5",
                                            "--model",
                                            "Tracker \"X\"",
                                            "--host-version",
                                            "v3.0",
                                            "--latency",
                                            "250",
                                            "--state",
                                            "lab.json",
                                            "--plugin",
                                            "/tmp/m.so",
                                            "--font-size",
                                            "14",
                                            "--fail",
                                            "3",
                                            "--fail",
                                            "config *"});
        QVERIFY(options.isObserver);
        QVERIFY(options.isDark);
        QCOMPARE(versionText(options.interfaceVersion), "1.9");
        QCOMPARE(options.interfaceVersion.micro, -1);
        QCOMPARE(versionText(options.ptVersion), "3.1.2");
        QCOMPARE(versionText(options.ctVersion), "5");
        QCOMPARE(options.systemModel, "Tracker \"X\"");
        QCOMPARE(options.hostVersion, "v3.0");
        QCOMPARE(options.latencyMs, 250);
        QCOMPARE(options.fontSize, 14);
        QCOMPARE(options.stateFile, "lab.json");
        QCOMPARE(options.pluginFile, "/tmp/m.so");
        QCOMPARE(options.failureRules, QStringList({"3", "config *"}));
        QCOMPARE(parsed({"--tour", "pictures"}).tourDirectory, "pictures");
        const HostPort controller =
            parsed({"--controller", "[::1]:4711"}).controller.value_or(HostPort());
        QCOMPARE(controller.host, "::1");
        QCOMPARE(int(controller.port), 4711);
    }

    void whatIsNotUnderstoodOrDoesNotGoTogetherIsRefused()
    {
        expectRefusal({"--bogus"}, "Unknown option 'bogus'.");
        expectRefusal({"file.dat"}, "Unexpected argument \"file.dat\".");
        expectRefusal({"--state"}, "Missing value after '--state'.");
        for (const QString option : {"state", "plugin", "tour"}) {
            expectRefusal({"--" + option + '='}, "--" + option + " wants a path.");
        }
        expectRefusal({"--tour", "x", "--state", "y"},
                      "--tour changes the controller's state, so it goes without --state.");
        expectRefusal({"--tour", "x", "--observer"},
                      "--tour needs the modules' actions, so it goes without --observer.");
        for (const QString option : {"--state", "--latency", "--fail", "--tour"}) {
            expectRefusal({"--controller", "x:1", option, "1"},
                          option
                              + " is for the simulated controller in the host, so it goes "
                                "without --controller.");
        }
    }

    void valuesAreChecked()
    {
        const auto expectNot = [](const QString &option, const QString &wanted,
                                  const QStringList &values) {
            for (const QString &value : values) {
                expectRefusal({option + '=' + value},
                              option + " wants " + wanted + ", not \"" + value + "\".");
            }
        };
        const QString version = "a version such as 1.27.0";
        expectNot("--pt-version", version, {"new"});
        expectNot("--ct-version", version, {"1.2.3.4", "1.", "1.99999999999"});
        expectNot("--interface-version", version, {"x"});
        expectNot("--latency", "milliseconds from 0 to 600000", {"fast", "-1", "600001"});
        expectNot("--font-size", "points from 1 to 72", {"0", "73"});
        expectNot("--controller", "HOST:PORT, such as tracker:4711 or [::1]:4711",
                  {"tracker", ":4711", "", "[::1]"});
        expectRefusal({"--latency", "x", "--pt-version", "y"}, // the first one is told
                      "--pt-version wants a version such as 1.27.0, not \"y\".");
    }
};

VELTRA4_TEST(TestHostOptions)
#include "tst_hostoptions.moc"
