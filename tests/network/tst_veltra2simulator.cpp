#include "projectversion.h"
#include "network/networkchannel.h"
#include "simulator/controllerstate.h"
#include "tests/network/serverprocess.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <array>

namespace {

struct Outcome
{
    int exitCode = -1;
    QString output;
    QString errors;
};

Outcome run(const QStringList &arguments)
{
    QProcess server;
    server.start(serverProgram(), arguments);
    Outcome outcome;
    if (server.waitForFinished() && server.exitStatus() == QProcess::NormalExit) {
        outcome.exitCode = server.exitCode();
    }
    outcome.output = QString::fromLocal8Bit(server.readAllStandardOutput());
    outcome.errors = QString::fromLocal8Bit(server.readAllStandardError());
    return outcome;
}

QString ask(NetworkChannel &channel, const char *command)
{
    std::array<char, LineChannel::replyCapacity> reply = {};
    return channel.queryString(reply.data(), "%s", command) == 0 ? QString::fromLatin1(reply.data())
                                                                 : "(failed)";
}

} // namespace

class TestVeltra2Simulator : public QObject
{
    Q_OBJECT

private slots:
    void refusesInOneLineWithExitCode2_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("problem");
        const auto row = [](const QStringList &arguments, const QString &problem) {
            QTest::newRow(qPrintable(arguments.join(' '))) << arguments << problem;
        };
        row({"--bogus"}, "Unknown option 'bogus'.");
        row({"extra"}, "Unexpected argument \"extra\".");
        row({"--port", "65536"}, "--port wants a number from 0 to 65535, not \"65536\".");
        row({"--port", "x"}, "--port wants a number from 0 to 65535, not \"x\".");
        row({"--listen", "somewhere"},
            "--listen wants an address such as 0.0.0.0 or ::1, not \"somewhere\".");
        row({"--latency", "-1"}, "--latency wants a number from 0 to 600000, not \"-1\".");
        row({"--idle-limit", "0"}, "--idle-limit wants a number from 1 to 604800, not \"0\".");
        row({"--state", ""}, "--state wants a path.");
        row({"--state", "/etc/passwd"}, "/etc/passwd");
        row({"--fail", "/(/"}, "\"/(/\"");
        row({"--fail", "%%%"}, "\"%%%\" fits no command of the controller");
        row({"--listen", "192.0.2.1", "--port", "0"}, "192.0.2.1:0: ");
    }

    void refusesInOneLineWithExitCode2()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, problem);
        const Outcome outcome = run(arguments);
        QCOMPARE(outcome.exitCode, 2);
        QVERIFY2(outcome.errors.startsWith("veltra2-simulator: " + problem),
                 qPrintable(outcome.errors));
        QCOMPARE(outcome.errors.count('\n'), 1);
        QCOMPARE(outcome.output, QString());
    }

    void helpNamesEveryOption()
    {
        const Outcome outcome = run({"--help"});
        QCOMPARE(outcome.exitCode, 0);
        for (const char *option : {"--port", "--listen", "--state", "--latency", "--fail",
                                   "--idle-limit", "--help", "--version"}) {
            QVERIFY2(outcome.output.contains(option), option);
        }
        QVERIFY(outcome.output.contains("\"config *#3+\""));
    }

    void versionIsThatOfTheProject()
    {
        const Outcome outcome = run({"--version"});
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.output.trimmed(), QStringLiteral("veltra2-simulator " VELTRA4_VERSION));
    }

    void servesOnTheLoopbackUnlessToldOtherwise()
    {
        const ServerProcess server(ControllerState::sample());
        QCOMPARE(server.address().host, "127.0.0.1");
        QVERIFY(server.address().port != 0);
    }

    void commandsCanBeMadeToFail()
    {
        const ServerProcess server(
            ControllerState::sample(),
            {"--fail", "system model=other", "--fail", "system net", "--latency", "1"});
        NetworkChannel channel(server.address());
        QCOMPARE(ask(channel, "system hostname"), QString("tracker-lab2"));
        QCOMPARE(ask(channel, "system model"), QString("other"));
        QCOMPARE(ask(channel, "system net"), QString("(failed)"));
    }
};

VELTRA4_TEST(TestVeltra2Simulator)
#include "tst_veltra2simulator.moc"
