#include "tcpchannel.h"

#include "tests/network/fakecontroller.h"
#include "tests/support/testmain.h"

#include <QtTest>

namespace {

using Request = WireProtocol::Request;

void echo(FakeController &controller, const Request &request)
{
    controller.answer(request, request.command);
}

// Answers what is greeted and nothing else.
void greet(FakeController &controller, const Request &request)
{
    if (request.command == "hello") {
        echo(controller, request);
    }
}

TcpChannel channelTo(
    const FakeController &controller, const TcpChannel::Pane &pane = [](const QString &) {})
{
    return {controller.address().host, controller.address().port, pane};
}

// What the channel answers to @p command, "(failed)" if it fails and leaves the reply alone.
QByteArray ask(TcpChannel &channel, const char *command)
{
    char reply[200] = "(failed)";
    const int result = channel.queryString(reply, "%s", command);
    return result == 0 || qstrcmp(reply, "(failed)") == 0 ? reply : "touched though it failed";
}

const QByteArray failed = "(failed)";

class Receiver final : public MessageReceiver
{
public:
    int receiveMessage(int /*id*/, const char *source, const char *text) override
    {
        received << QByteArray(source) + ' ' + text;
        return 0;
    }

    QByteArrayList received;
};

} // namespace

/// The channel that integrators copy.
class TestTcpChannel : public QObject
{
    Q_OBJECT

private slots:
    void answersAreTaken()
    {
        const FakeController controller(echo);
        TcpChannel channel = channelTo(controller);
        QCOMPARE(ask(channel, "one"), QByteArray("one"));
        QCOMPARE(ask(channel, " 13 'x' "), QByteArray(" 13 'x' "));
        QCOMPARE(ask(channel, "50%"), QByteArray("50%"));
        QCOMPARE(ask(channel, ""), QByteArray(""));
        char reply[200] = "";
        QCOMPARE(channel.sendCommandReply(reply, "%s %s", "veltra2", "ok"), 0);
        QCOMPARE(QByteArray(reply), QByteArray("veltra2 ok"));
        int number = 0;
        QCOMPARE(channel.queryInt(&number, "%02d", 7), 0);
        QCOMPARE(number, 7);
        double fraction = 0;
        QCOMPARE(channel.queryDouble(&fraction, "0.25"), 0);
        QCOMPARE(fraction, 0.25);
        bool isTrue = false;
        QCOMPARE(channel.queryBool(&isTrue, "yes"), 0);
        QVERIFY(isTrue);
        QCOMPARE(channel.queryBool(&isTrue, "no"), 0);
        QVERIFY(!isTrue);
        QCOMPARE(channel.sendCommand("whatever"), 0);
        QCOMPARE(controller.connectionCount(), 1);
    }

    void whatIsOfAnotherKindLeavesTheValueAlone()
    {
        const FakeController controller(echo);
        TcpChannel channel = channelTo(controller);
        int number = 5;
        QVERIFY(channel.queryInt(&number, "many") != 0);
        QCOMPARE(number, 5);
        double fraction = 0.5;
        QVERIFY(channel.queryDouble(&fraction, "half") != 0);
        QCOMPARE(fraction, 0.5);
        bool isTrue = true;
        QVERIFY(channel.queryBool(&isTrue, "perhaps") != 0);
        QVERIFY(isTrue);
    }

    void argumentsAreLatin1()
    {
        QByteArray arrived;
        {
            const FakeController controller(
                [&arrived](FakeController &self, const Request &request) {
                    arrived = request.command;
                    echo(self, request);
                });
            TcpChannel channel = channelTo(controller);
            QCOMPARE(ask(channel, "pr\xfc\n\"50%\""), QByteArray("pr\xfc\n\"50%\""));
        }
        QCOMPARE(arrived, QByteArray("pr\xfc\n\"50%\""));
    }

    void aRefusalFails()
    {
        const FakeController controller([](FakeController &self, const Request &request) {
            self.send(WireProtocol::lineOf(WireProtocol::Answer{request.id, Reply::refused("no")}));
        });
        TcpChannel channel = channelTo(controller);
        for (int i = 0; i < 5; ++i) {
            QCOMPARE(ask(channel, "x"), failed);
            QVERIFY(channel.sendCommand("x") != 0);
        }
        QCOMPARE(controller.requestCount(), 10); // a refusal is no silence
    }

    void anAnswerHasAtMost199Bytes()
    {
        const FakeController controller(echo);
        TcpChannel channel = channelTo(controller);
        QCOMPARE(ask(channel, QByteArray(199, 'x').constData()), QByteArray(199, 'x'));
        QCOMPARE(ask(channel, QByteArray(200, 'x').constData()), failed);
        QCOMPARE(ask(channel, "y"), QByteArray("y"));
    }

    void aCommandThatIsTooLongIsNotSent()
    {
        const FakeController controller(echo);
        TcpChannel channel = channelTo(controller);
        QCOMPARE(ask(channel, QByteArray(1000, 'x').constData()), failed);
        QCOMPARE(controller.connectionCount(), 0);
    }

    void aLateAnswerIsNotTakenForTheNext()
    {
        const FakeController controller([](FakeController &self, const Request &request) {
            if (request.command == "second") {
                self.answer({request.id - 1, {}}, "too late");
            }
            if (request.command != "first") {
                echo(self, request);
            }
        });
        TcpChannel channel = channelTo(controller);
        QCOMPARE(ask(channel, "hello"), QByteArray("hello"));
        channel.setTimeout(0, 0, 0);
        QCOMPARE(ask(channel, "first"), failed);
        channel.setTimeout(0, 20000, 0);
        QCOMPARE(ask(channel, "second"), QByteArray("second"));
        QCOMPARE(controller.connectionCount(), 1);
    }

    // The later time-outs are so long that waiting for them would fail the test.
    void aSilentControllerIsNotWaitedForEachTime()
    {
        const FakeController controller(greet);
        TcpChannel channel = channelTo(controller);
        QCOMPARE(ask(channel, "hello"), QByteArray("hello"));
        channel.setTimeout(0, 0, 0);
        QCOMPARE(ask(channel, "x"), failed);
        QCOMPARE(ask(channel, "x"), failed);
        channel.setTimeout(0, 1000000, 0);
        QCOMPARE(ask(channel, "x"), failed);
        QTRY_COMPARE(ask(channel, "hello"), QByteArray("hello"));
    }

    void aLostConnectionIsMadeAnew()
    {
        const FakeController controller([](FakeController &self, const Request &request) {
            if (request.command == "bye") {
                self.closeConnection();
            } else {
                echo(self, request);
            }
        });
        TcpChannel channel = channelTo(controller);
        QCOMPARE(ask(channel, "bye"), failed);
        QCOMPARE(ask(channel, "hello"), QByteArray("hello"));
        QCOMPARE(controller.connectionCount(), 2);
    }

    void withoutAControllerCommandsFail()
    {
        TcpChannel channel("127.0.0.1", 1, [](const QString &) {});
        QCOMPARE(ask(channel, "x"), failed);
        QCOMPARE(ask(channel, "x"), failed);
        QCOMPARE(ask(channel, "x"), failed);
    }

    void noTimerRunsMeanwhile()
    {
        const FakeController controller([](FakeController &self, const Request &request) {
            QThread::msleep(20);
            echo(self, request);
        });
        TcpChannel channel = channelTo(controller);
        bool hasRun = false;
        QTimer::singleShot(0, this, [&hasRun] { hasRun = true; });
        QCOMPARE(ask(channel, "x"), QByteArray("x"));
        QVERIFY(!hasRun);
        QCoreApplication::processEvents();
        QVERIFY(hasRun);
    }

    void messagesAreShown()
    {
        const FakeController controller(echo);
        QStringList shown;
        TcpChannel channel =
            channelTo(controller, [&shown](const QString &line) { shown << line; });
        channel.postMessage("standard", "VELTRA4", 1, "no config \"M\xfcller\"");
        QCOMPARE(shown,
                 QStringList(QString::fromLatin1("standard VELTRA4: no config \"M\xfcller\"")));
        QCOMPARE(controller.connectionCount(), 0);
    }

    void receiversGoByThePointer()
    {
        const FakeController controller(echo);
        TcpChannel channel = channelTo(controller);
        Receiver receiver;
        QCOMPARE(channel.addMessageReceiver("one name", &receiver), 0);
        channel.deliver("Veltra2", "v4.1");
        QCOMPARE(channel.removeMessageReceiver("another", &receiver), 0);
        channel.deliver("Veltra2", "v4.2");
        QCOMPARE(receiver.received, QByteArrayList{"Veltra2 v4.1"});
    }
};

VELTRA4_TEST(TestTcpChannel)
#include "tst_tcpchannel.moc"
