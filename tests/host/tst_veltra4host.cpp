#include "projectversion.h"
#include "tests/support/testmain.h"

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

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

QString beside(const QString &fileName)
{
    return QDir(QCoreApplication::applicationDirPath()).filePath(fileName);
}

} // namespace

class TestVeltra4Host : public QObject
{
    Q_OBJECT

private slots:
    // What is wrong is told by the classes that find it.
    void refusesInOneLineWithExitCode2()
    {
        const QTemporaryDir others; // not made by a tour
        const QString home = others.filePath("home");
        QVERIFY(QDir().mkpath(home));
        for (const auto &[option, value, told] : QVector<std::tuple<QString, QString, QString>>{
                 {"--pt-version", "x", "--pt-version wants a version"},
                 {"--plugin", "/nosuch.so", "There is no plug-in \"/nosuch.so\"."},
                 {"--fail", "%%%", "\"%%%\" fits no command of the controller"},
                 {"--state", "/etc/passwd", "/etc/passwd: "},
                 {"--tour", others.path(),
                  '"' + home + "\" was not made by a tour and is left alone."}}) {
            const Outcome outcome = run({option, value});
            QCOMPARE(outcome.exitCode, 2);
            QCOMPARE(outcome.errorLines.size(), 1);
            QVERIFY2(outcome.errorLines.at(0).startsWith("veltra4-host: " + told),
                     qPrintable(outcome.errorLines.at(0)));
            QCOMPARE(outcome.output, "");
        }
        QVERIFY(QDir(home).exists());
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
        QVERIFY(outcome.output.contains("\"config *#3+\""));
    }

    void versionIsThatOfTheProject()
    {
        QCOMPARE(run({"--version"}).output, "veltra4-host " VELTRA4_VERSION "\n");
    }

    void aTourThatFailsNamesItsStepWithExitCode1()
    {
        for (const auto &[option, value, told] : QVector<std::tuple<QString, QString, QString>>{
                 {"--plugin", beside("probemodule.so"),
                  "\"The host at its start\": there is no action \"&Configurations\""},
                 {"--fail", "config active_config standard",
                  "\"Activate the standard configuration\": the controller's active configuration "
                  "is "}}) {
            const QTemporaryDir folder;
            const Outcome outcome = run({option, value, "--tour", folder.path()});
            QCOMPARE(outcome.exitCode, 1);
            const QString line = outcome.errorLines.filter("veltra4-host: ").value(0);
            QVERIFY2(line.startsWith("veltra4-host: the tour failed at " + told), qPrintable(line));
            QVERIFY(QFile::exists(folder.filePath("transcript.txt")));
        }
    }

    void aLargerFontMakesLargerPictures()
    {
        // Of a tour that gets no further than its first picture.
        const auto heightOfPicture = [](const QStringList &font) {
            const QTemporaryDir folder;
            run(font + QStringList{"--plugin", beside("probemodule.so"), "--tour", folder.path()});
            return QImage(folder.filePath("01-host-before-contact.png")).height();
        };
        const int ordinary = heightOfPicture({});
        const int large = heightOfPicture({"--font-size", "20"});
        QVERIFY2(ordinary > 0, "the tour made no picture");
        QVERIFY2(large > ordinary * 3 / 2, qPrintable(QString("%1 pixels").arg(large)));
    }
};

VELTRA4_TEST(TestVeltra4Host)
#include "tst_veltra4host.moc"
