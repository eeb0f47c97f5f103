#include "host/networklink.h"

#include "host/hostoptions.h"
#include "host/hostsession.h"
#include "simulator/controllerstate.h"
#include "tests/network/serverprocess.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QLabel>
#include <QTest>

namespace {

HostOptions probe()
{
    HostOptions options;
    options.pluginFile = QDir(QCoreApplication::applicationDirPath()).filePath("probemodule.so");
    return options;
}

void start(HostSession &session)
{
    QString problem;
    QVERIFY2(session.load(&problem), qPrintable(problem));
    session.start();
}

QString label(HostSession &session, const char *name)
{
    return session.window().findChild<QLabel *>(name)->text();
}

} // namespace

class TestNetworkLink : public QObject
{
    Q_OBJECT

private slots:
    void theWindowShowsWhereTheControllerIs()
    {
        const ServerProcess server(ControllerState::sample());
        NetworkLink link(server.address());
        HostSession session(link, probe());
        start(session);
        QCOMPARE(label(session, "label_connection"), server.address().toText());
        QCOMPARE(label(session, "label_hostName"), "tracker-lab2");
    }

    void theWindowShowsThatTheContactIsLostAndRegained()
    {
        ServerProcess server(ControllerState::sample());
        NetworkLink link(server.address());
        HostSession session(link, probe());
        start(session);
        server.kill();
        QTRY_COMPARE(label(session, "label_connection"),
                     server.address().toText() + " (no contact)");
        server.restart();
        QCOMPARE(link.moduleChannel().sendCommand("system hostname renamed"), 0);
        QCOMPARE(label(session, "label_connection"), server.address().toText());
        QTRY_COMPARE(label(session, "label_hostName"), "renamed");
    }

    void theWindowShowsThatTheControllerIsSilent()
    {
        ServerProcess server(ControllerState::sample());
        NetworkLink link(server.address());
        HostSession session(link, probe());
        start(session);
        QCOMPARE(link.moduleChannel().sendCommand("system hostname renamed"), 0);
        server.stop();
        link.moduleChannel().setTimeout(0, 50, 1);
        QVERIFY(link.moduleChannel().sendCommand("system hostname again") != 0);
        QCOMPARE(label(session, "label_connection"), server.address().toText() + " (no answer)");
        server.resume();
        QTRY_COMPARE(label(session, "label_connection"), server.address().toText());
        // What had to wait was done in the end.
        QTRY_COMPARE(label(session, "label_hostName"), "again");
    }

    // The module is told the model when the controller can be asked for it.
    void theHostMayBeStartedFirst()
    {
        ServerProcess server(ControllerState::sample());
        server.kill();
        NetworkLink link(server.address());
        HostSession session(link, probe());
        start(session);
        QCOMPARE(label(session, "label_connection"), server.address().toText() + " (no contact)");
        QCOMPARE(label(session, "label_model"), "\u2014");
        server.restart();
        QCOMPARE(link.moduleChannel().sendCommand("system hostname renamed"), 0);
        QTRY_COMPARE(label(session, "label_model"), "Indoor Tracker 5");
        QCOMPARE(session.versions().systemModel, "Indoor Tracker 5");
    }
};

VELTRA4_TEST(TestNetworkLink)
#include "tst_networklink.moc"
