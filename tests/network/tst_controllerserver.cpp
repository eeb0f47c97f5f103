#include "server/controllerserver.h"

#include "network/wireprotocol.h"
#include "server/servedcontroller.h"
#include "simulator/statefile.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QNetworkProxy>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

// A client that speaks the protocol by hand.
class RawClient
{
public:
    explicit RawClient(const HostPort &address)
    {
        m_socket.setProxy(QNetworkProxy::NoProxy);
        m_socket.connectToHost(address.host, address.port);
    }

    void send(const QByteArray &bytes) { m_socket.write(bytes); }
    QByteArray received()
    {
        m_received += m_socket.readAll();
        return m_received;
    }
    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    bool isClosed() const { return m_socket.state() == QAbstractSocket::UnconnectedState; }
    void close() { m_socket.abort(); }
    // Reads nothing more than this.
    void stopReading() { m_socket.setReadBufferSize(1); }
    bool isAllSent() const { return m_socket.bytesToWrite() == 0; }

private:
    QTcpSocket m_socket;
    QByteArray m_received;
};

// A server and its controller, in the event loop of the test.
struct Setup
{
    explicit Setup(const ClientLimits &limits = {})
        : server(controller, limits)
    {
        QString problem;
        if (!server.listen(QHostAddress::LocalHost, 0, &problem)) {
            qFatal("%s", qPrintable(problem));
        }
    }

    ServedController controller;
    ControllerServer server;
};

} // namespace

class TestControllerServer : public QObject
{
    Q_OBJECT

private slots:
    void commandsAreAnsweredInOrder()
    {
        Setup setup;
        RawClient client(setup.server.address());
        client.send(
            "17 system hostname\n3 config active_config standard\r\n17 config active_config\n");
        QTRY_COMPARE(client.received(), "17 ok tracker-lab2\n3 ok\n17 ok standard\n");
    }

    void refusalsNameTheirReason()
    {
        Setup setup;
        RawClient client(setup.server.address());
        client.send("1 nonsense\n2 config active_config no%22such\n");
        QTRY_COMPARE(client.received().count('\n'), 2);
        QVERIFY(client.received().startsWith("1 error unknown command\n2 error "));
    }

    void clientsSeeOneStateButNotEachOthersTransfers()
    {
        Setup setup;
        RawClient one(setup.server.address());
        RawClient other(setup.server.address());
        one.send("1 system download prepare 'config' 'standard'\n2 system hostname renamed\n");
        QTRY_COMPARE(one.received(), "1 ok\n2 ok\n");
        other.send("1 system download available\n2 system hostname\n");
        QTRY_COMPARE(other.received(), "1 ok no\n2 ok renamed\n");
        one.send("3 system download available\n");
        QTRY_COMPARE(one.received(), "1 ok\n2 ok\n3 ok yes\n");
    }

    void whatIsNoRequestIsToldOf()
    {
        Setup setup;
        RawClient client(setup.server.address());
        client.send("\n\xff" + QByteArray(1, '\0') + "\xfe\n");
        client.send("GET / HTTP/1.1\n1 a\tb\n1 %zz\n1 system hostname\n");
        QTRY_COMPARE(client.received(),
                     "0 error not a request\n"
                     "0 error not a request\n"
                     "0 error not a request\n"
                     "0 error not a request\n"
                     "0 error not a request\n"
                     "1 ok tracker-lab2\n");
    }

    void anOverlongLineEndsTheConnection()
    {
        const QByteArray overlong(WireProtocol::longestLine + 1, '1');
        for (const QByteArray &line :
             {overlong, overlong + "\n2 system model\n", QByteArray(1000000, '1')}) {
            Setup setup;
            RawClient client(setup.server.address());
            client.send("1 system hostname\n" + line);
            QTRY_COMPARE(client.received(), "1 ok tracker-lab2\n0 error the line is too long\n");
            QTRY_VERIFY(client.isClosed());
        }
    }

    void aClientThatLeavesInTheMiddleOfALineDoesNoHarm()
    {
        Setup setup;
        {
            RawClient leaver(setup.server.address());
            leaver.send("1 config active_config standard\n2 config active_conf");
            QTRY_COMPARE(leaver.received(), "1 ok\n");
        }
        RawClient client(setup.server.address());
        client.send("1 config active_config\n");
        QTRY_COMPARE(client.received(), "1 ok standard\n");
    }

    void manyRequestsAtOnceAreAllAnswered()
    {
        constexpr int count = 5000;
        Setup setup;
        RawClient client(setup.server.address());
        QByteArray requests;
        QByteArray answers;
        for (int id = 1; id <= count; ++id) {
            requests += QByteArray::number(id) + " system hostname\n";
            answers += QByteArray::number(id) + " ok tracker-lab2\n";
        }
        client.send(requests);
        QTRY_COMPARE(client.received(), answers);
    }

    void oneSlowAnswerDelaysNobodyElse()
    {
        Setup setup;
        QString error;
        QVERIFY(setup.controller.faults().add("system model~600000", &error));
        QVERIFY(setup.controller.faults().add("system net~1", &error));
        RawClient slow(setup.server.address());
        slow.send("1 system model\n2 system hostname\n");
        RawClient client(setup.server.address());
        client.send("1 system net\n2 system hostname\n");
        QTRY_COMPARE(client.received(), "1 ok 192.168.40.17/24\n2 ok tracker-lab2\n");
        QCOMPARE(slow.received(), QByteArray());
    }

    void faultsAreMadeOnPurpose()
    {
        Setup setup;
        QString error;
        QVERIFY(setup.controller.faults().add("config active_config *", &error));
        QVERIFY(setup.controller.faults().add("system hostname=else", &error));
        RawClient client(setup.server.address());
        client.send("1 config active_config standard\n2 system hostname\n3 config active_config\n");
        QTRY_COMPARE(client.received().count('\n'), 3);
        QCOMPARE(client.received(),
                 "1 error failed on purpose\n2 ok else\n3 ok config20231106081559902\n");
    }

    void moreClientsThanAllowedAreSentAway()
    {
        Setup setup;
        std::vector<std::unique_ptr<RawClient>> clients;
        for (int i = 0; i < ControllerServer::mostClients; ++i) {
            clients.push_back(std::make_unique<RawClient>(setup.server.address()));
            clients.back()->send("1 system hostname\n");
            QTRY_COMPARE(clients.back()->received(), "1 ok tracker-lab2\n");
        }
        RawClient oneMore(setup.server.address());
        QTRY_COMPARE(oneMore.received(), "0 error too many clients\n");
        QTRY_VERIFY(oneMore.isClosed());
        // There is room again when one leaves.
        clients.pop_back();
        QTRY_COMPARE(setup.server.findChildren<ClientConnection *>().size(),
                     ControllerServer::mostClients - 1);
        RawClient late(setup.server.address());
        late.send("1 system hostname\n");
        QTRY_COMPARE(late.received(), "1 ok tracker-lab2\n");
    }

    void aSilentClientIsSentAway()
    {
        ClientLimits limits;
        limits.idleMs = 50;
        Setup setup(limits);
        RawClient client(setup.server.address());
        QTRY_COMPARE(client.received(), "0 error no command for too long\n");
        QTRY_VERIFY(client.isClosed());
    }

    void anUnfinishedLineIsNotWaitedForForLong()
    {
        ClientLimits limits;
        limits.unfinishedLineMs = 50;
        Setup setup(limits);
        RawClient client(setup.server.address());
        client.send("1 system hostname\n2 system host");
        QTRY_COMPARE(client.received(), "1 ok tracker-lab2\n0 error the line was not finished\n");
        QTRY_VERIFY(client.isClosed());
    }

    void aClientThatDoesNotReadIsCutOff()
    {
        Setup setup;
        RawClient client(setup.server.address());
        QTRY_VERIFY(client.isConnected());
        client.stopReading();
        QByteArray requests;
        for (int i = 0; i < 1000; ++i) {
            requests += "1 system hostname\n";
        }
        // Much more than the system buffers on the way.
        for (int i = 0; i < 10000 && setup.server.findChild<ClientConnection *>() != nullptr; ++i) {
            if (client.isAllSent()) {
                client.send(requests);
            }
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
        QVERIFY(setup.server.findChild<ClientConnection *>() == nullptr);
    }

    void whatWasAnsweredIsInTheFile()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("state.json");
        Setup setup;
        QString problem;
        QVERIFY(setup.controller.keepStateIn(path, &problem));
        RawClient client(setup.server.address());
        client.send("1 system hostname renamed\n");
        QTRY_COMPARE(client.received(), "1 ok\n");
        ControllerState state;
        QVERIFY2(StateFile::load(path, &state, &problem), qPrintable(problem));
        QCOMPARE(state.hostName, "renamed");
    }

    void whatCannotBeSavedIsRefused()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("state.json");
        Setup setup;
        QString problem;
        QVERIFY(setup.controller.keepStateIn(path, &problem));
        QVERIFY(folder.remove());
        RawClient client(setup.server.address());
        client.send("1 system hostname renamed\n");
        QTRY_COMPARE(client.received().count('\n'), 1);
        QVERIFY2(client.received().startsWith("1 error ")
                     && client.received().contains("state.json"),
                 client.received().constData());
    }

    void anAddressInUseIsToldOf()
    {
        Setup setup;
        ControllerServer second(setup.controller);
        QString problem;
        QVERIFY(!second.listen(QHostAddress::LocalHost, setup.server.address().port, &problem));
        QVERIFY2(problem.startsWith(setup.server.address().toText()), qPrintable(problem));
    }
};

VELTRA4_TEST(TestControllerServer)
#include "tst_controllerserver.moc"
