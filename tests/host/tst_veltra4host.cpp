#include "projectversion.h"
#include "tests/support/testmain.h"

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

struct Outcome
{
    int exitCode = -1;
    QString output;
    QStringList errorLines;
};

Outcome run(const QStringList &arguments)
{
    QProcess host;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Without it Qt adds a line of its own about its default.
    const QTemporaryDir runtime;
    environment.insert("XDG_RUNTIME_DIR", runtime.path());
    host.setProcessEnvironment(environment);
    host.start(QDir(QCoreApplication::applicationDirPath()).filePath("veltra4-host"), arguments);
    Outcome outcome;
    if (host.waitForFinished() && host.exitStatus() == QProcess::NormalExit) {
        outcome.exitCode = host.exitCode();
    }
    outcome.output = QString::fromLocal8Bit(host.readAllStandardOutput());
    outcome.errorLines = QString::fromLocal8Bit(host.readAllStandardError())
                             .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return outcome;
}

QString quoted(const QString &text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString beside(const QString &fileName)
{
    return QDir(QCoreApplication::applicationDirPath()).filePath(fileName);
}

} // namespace

class TestVeltra4Host : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

private slots:
    void refusesInOneLineWithExitCode2_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("line");
        const QString prefix = "veltra4-host: ";
        QTest::newRow("unknown option")
            << QStringList{"--bogus"} << prefix + "Unknown option 'bogus'.";
        QTest::newRow("wrong version")
            << QStringList{"--pt-version", "x"}
            << prefix + "--pt-version wants a version such as 1.27.0, not " + quoted("x") + ".";
        QTest::newRow("missing plug-in")
            << QStringList{"--plugin", "/nosuch.so"}
            << prefix + "There is no plug-in " + quoted("/nosuch.so") + ".";
        QTest::newRow("no plug-in") << QStringList{"--plugin", "/etc/passwd"}
                                    << prefix + quoted("/etc/passwd") + " is not a Qt plug-in.";
        QTest::newRow("other plug-in") << QStringList{"--plugin", beside("othermodule.so")}
                                       << prefix + quoted(beside("othermodule.so"))
                + " is the plug-in " + quoted("com.zor.Veltra2.OtherModule") + ", not "
                + quoted("com.zor.Veltra2.ConfigurationsModule") + ".";
        QTest::newRow("other contract")
            << QStringList{"--plugin", beside("contractlessmodule.so")}
            << prefix + quoted(beside("contractlessmodule.so")) + " does not offer the interface "
                + quoted("com.zor.veltra2.gui.Module/0.2.0") + ".";
        QTest::newRow("broken plug-in")
            << QStringList{"--plugin", beside("brokenmodule.so")}
            << prefix + quoted(beside("brokenmodule.so")) + " cannot be loaded: ";
        QTest::newRow("wrong controller") << QStringList{"--controller", "[::1]"}
                                          << prefix
                + "--controller wants HOST:PORT, such as tracker:4711 or [::1]:4711, not "
                  "\"[::1]\".";
        QTest::newRow("rule that fits nothing")
            << QStringList{"--fail", "%%%"}
            << prefix + quoted("%%%") + " fits no command of the controller";
        QTest::newRow("wrong rule") << QStringList{"--fail", "/(/"} << prefix + quoted("/(/");
        QTest::newRow("unusable state")
            << QStringList{"--state", "/etc/passwd"} << prefix + "/etc/passwd";
    }

    void refusesInOneLineWithExitCode2()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, line);
        const Outcome outcome = run(arguments);
        QCOMPARE(outcome.exitCode, 2);
        QCOMPARE(outcome.errorLines.size(), 1);
        QVERIFY2(outcome.errorLines.constFirst().startsWith(line),
                 qPrintable(outcome.errorLines.constFirst()));
        QCOMPARE(outcome.output, QString());
    }

    void refusesAFolderThatIsNotATours()
    {
        QVERIFY(QDir(m_folder.path()).mkpath("mine/home"));
        const Outcome outcome =
            run({"--plugin", beside("probemodule.so"), "--tour", m_folder.filePath("mine")});
        QCOMPARE(outcome.exitCode, 2);
        QVERIFY(QDir(m_folder.path()).exists("mine/home"));
    }

    void helpNamesEveryOption()
    {
        const Outcome outcome = run({"--help"});
        QCOMPARE(outcome.exitCode, 0);
        for (const char *option :
             {"--controller", "--observer", "--interface-version", "--pt-version", "--ct-version",
              "--model", "--host-version", "--latency", "--fail", "--state", "--dark",
              "--font-size", "--plugin", "--tour"}) {
            QVERIFY2(outcome.output.contains(option), option);
        }
        QVERIFY(outcome.output.contains(quoted("config *#3+")));
    }

    void versionIsThatOfTheProject()
    {
        const Outcome outcome = run({"--version"});
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.output.trimmed(), QStringLiteral("veltra4-host " VELTRA4_VERSION));
    }

    void aTourThatFailsNamesItsStepWithExitCode1_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("line");
        QTest::newRow("module without the action")
            << QStringList{"--plugin", beside("probemodule.so")}
            << "veltra4-host: the tour failed at \"The host at its start\": there is no "
               "action \"&Configurations\"";
        QTest::newRow("command that fails")
            << QStringList{"--fail", "config active_config standard"}
            << "veltra4-host: the tour failed at \"Activate the standard configuration\": "
               "the controller's active configuration is ";
        QTest::newRow("chunk that is refused")
            << QStringList{"--fail", "system upload * 5 *"}
            << "veltra4-host: the tour failed at \"Load the saved configurations";
    }

    void aTourThatFailsNamesItsStepWithExitCode1()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, line);
        const Outcome outcome =
            run(arguments + QStringList{"--tour", m_folder.filePath("failing")});
        QCOMPARE(outcome.exitCode, 1);
        const QString actual = outcome.errorLines.filter("veltra4-host: ").value(0);
        QVERIFY2(actual.startsWith(line), qPrintable(actual));
        QVERIFY(QFile::exists(m_folder.filePath("failing/transcript.txt")));
    }

    void aLargerFontMakesLargerPictures()
    {
        const int ordinary = firstPicture("ordinary", {}).height();
        const int large = firstPicture("large", {"--font-size", "20"}).height();
        QVERIFY2(ordinary > 0, "the tour made no picture");
        QVERIFY2(large > ordinary * 3 / 2, qPrintable(QString("%1 pixels").arg(large)));
    }

private:
    // Of a tour that gets no further than the activation of a configuration.
    QImage firstPicture(const QString &folder, const QStringList &arguments) const
    {
        run(arguments
            + QStringList{"--fail", "config active_config standard", "--tour",
                          m_folder.filePath(folder)});
        return QImage(m_folder.filePath(folder + "/01-host-before-contact.png"));
    }
};

VELTRA4_TEST(TestVeltra4Host)
#include "tst_veltra4host.moc"
