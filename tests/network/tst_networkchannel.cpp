#include "network/networkchannel.h"

#include "hostapi/messagereceiver.h"
#include "simulator/channelobserver.h"
#include "tests/network/fakecontroller.h"
#include "tests/support/testmain.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QTcpServer>
#include <QTimer>
#include <QtTest>

#include <array>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using Request = WireProtocol::Request;
using Contact = NetworkChannel::Contact;

// So long that what waits for it fails by the test's own time-out.
constexpr double endless = 100000;

void echo(FakeController &controller, const Request &request)
{
    controller.answer(request, request.command);
}

void greetOnly(FakeController &controller, const Request &request)
{
    if (request.command == "hello") {
        controller.answer(request, "hello");
    }
}

// What the channel answers to @p command, or the result in brackets.
QByteArray ask(NetworkChannel &channel, const char *command)
{
    std::array<char, LineChannel::replyCapacity> reply{"untouched"};
    const int result = channel.queryString(reply.data(), "%s", command);
    const QByteArray text(reply.data());
    if (result != 0 && text != "untouched") {
        return "touched in spite of " + QByteArray::number(result);
    }
    return result == 0 ? text : '(' + QByteArray::number(result) + ')';
}

const QByteArray refused = "(1)";
const QByteArray timedOut = "(2)";
const QByteArray noContact = "(4)";
const QByteArray garbled = "(5)";

// Lets two commands time out, and gives the next ones all the time in the world.
void fallSilent(
    NetworkChannel &channel, const std::function<void()> &silence = [] {})
{
    QCOMPARE(ask(channel, "hello"), QByteArray("hello"));
    silence();
    channel.setTimeout(0, 0, 1);
    QCOMPARE(ask(channel, "x"), timedOut);
    QCOMPARE(ask(channel, "x"), timedOut);
    channel.setTimeout(0, 20000, 1);
}

// An address where nobody listens.
HostPort deadAddress()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return {QStringLiteral("127.0.0.1"), server.serverPort()};
}

// Takes connections into a queue, which is full already: further ones get no answer at all.
class FullListener
{
public:
    FullListener()
        : m_listener(::socket(AF_INET, SOCK_STREAM, 0))
    {
        m_address.sin_family = AF_INET;
        m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof m_address;
        auto *address = reinterpret_cast<sockaddr *>(&m_address);
        if (::bind(m_listener, address, size) != 0 || ::listen(m_listener, 0) != 0
            || ::getsockname(m_listener, address, &size) != 0) {
            qFatal("cannot listen");
        }
        for (int &client : m_clients) {
            client = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
            (void)::connect(client, address, size); // goes on by itself, or for ever
        }
    }
    ~FullListener()
    {
        for (const int client : m_clients) {
            ::close(client);
        }
        ::close(m_listener);
    }
    Q_DISABLE_COPY_MOVE(FullListener)

    HostPort address() const { return {QStringLiteral("127.0.0.1"), ntohs(m_address.sin_port)}; }

private:
    const int m_listener;
    sockaddr_in m_address = {};
    std::array<int, 4> m_clients = {};
};

class Receiver final : public MessageReceiver
{
public:
    int receiveMessage(int /*first*/, const char *source, const char *text) override
    {
        received << QByteArray(source) + ' ' + text;
        return 0;
    }

    QByteArrayList received;
};

} // namespace

class TestNetworkChannel : public QObject
{
    Q_OBJECT

private slots:
    // In good times
    void answersArrive()
    {
        FakeController controller(echo);
        NetworkChannel channel(controller.address());
        QCOMPARE(ask(channel, "one"), QByteArray("one"));
        int number = 0;
        QCOMPARE(channel.queryInt(&number, "%d", 42), 0);
        QCOMPARE(number, 42);
        QCOMPARE(channel.sendCommand("whatever"), 0);
        QCOMPARE(ask(channel, ""), QByteArray(""));
        QCOMPARE(ask(channel, QByteArray(199, 'x').constData()), QByteArray(199, 'x'));
        QCOMPARE(controller.connectionCount(), 1);
    }

    void refusalsFailAndAreExplained()
    {
        struct Observer final : ChannelObserver
        {
            void exchanged(const Exchange &exchange) override { reason = exchange.failureReason; }
            QString reason;
        } observer;
        FakeController controller([](FakeController &self, const Request &request) {
            self.send(WireProtocol::lineOf(
                WireProtocol::Answer{request.id, Reply::refused("not today, 100%")}));
        });
        NetworkChannel channel(controller.address());
        channel.setObserver(&observer);
        QCOMPARE(ask(channel, "x"), refused);
        QCOMPARE(observer.reason, QString("not today, 100%"));
    }

    void anyByteArrivesAtTheController()
    {
        QByteArray command;
        for (int code = 1; code < 256; ++code) {
            command += static_cast<char>(code);
        }
        QByteArray arrived;
        {
            FakeController controller([&arrived](FakeController &self, const Request &request) {
                arrived = request.command;
                self.answer(request, {});
            });
            NetworkChannel channel(controller.address());
            QCOMPARE(channel.sendCommand("%s", command.constData()), 0);
        }
        QCOMPARE(arrived, command);
    }

    void anAnswerMayComeInPieces()
    {
        FakeController controller([](FakeController &self, const Request &request) {
            const QByteArray line = QByteArray::number(request.id) + " ok in%20pieces\n";
            for (const char character : line) {
                self.send(QByteArray(1, character));
            }
        });
        NetworkChannel channel(controller.address());
        QCOMPARE(ask(channel, "x"), QByteArray("in pieces"));
        QCOMPARE(ask(channel, "x"), QByteArray("in pieces"));
    }

    void namesAndBothKindsOfAddressesAreFound_data()
    {
        QTest::addColumn<QString>("listening");
        QTest::addColumn<QString>("host");
        QTest::newRow("IPv4") << "127.0.0.1"
                              << "127.0.0.1";
        QTest::newRow("IPv6") << "::1"
                              << "::1";
        QTest::newRow("name") << "127.0.0.1"
                              << "localhost";
    }

    void namesAndBothKindsOfAddressesAreFound()
    {
        QFETCH(const QString, listening);
        QFETCH(const QString, host);
        if (!QTcpServer().listen(QHostAddress(listening))) {
            QSKIP("this machine has no such address");
        }
        if (QHostInfo::fromName(host).addresses().isEmpty()) {
            QSKIP("this machine does not know the name");
        }
        FakeController controller(echo, listening);
        NetworkChannel channel({host, controller.address().port});
        QCOMPARE(ask(channel, "x"), QByteArray("x"));
    }

    void noEventLoopRunsMeanwhile()
    {
        FakeController controller([](FakeController &self, const Request &request) {
            QThread::msleep(20);
            echo(self, request);
        });
        NetworkChannel channel(controller.address());
        bool hasRun = false;
        QTimer::singleShot(0, this, [&hasRun] { hasRun = true; });
        QCOMPARE(ask(channel, "x"), QByteArray("x"));
        QVERIFY(!hasRun);
        QCoreApplication::processEvents();
        QVERIFY(hasRun);
    }

    void messagesStayWithTheHost()
    {
        struct Observer final : ChannelObserver
        {
            void timeoutSet(int channel, int milliseconds, int flag) override
            {
                seen << QStringLiteral("%1 %2 %3").arg(channel).arg(milliseconds).arg(flag);
            }
            void messagePosted(const QByteArray &category, const QByteArray &source, int level,
                               const QByteArray &text) override
            {
                seen << QString::fromLatin1(category + ' ' + source + ' '
                                            + QByteArray::number(level) + ' ' + text);
            }
            QStringList seen;
        } observer;
        FakeController controller(echo);
        NetworkChannel channel(controller.address());
        channel.setTimeScale(0.5);
        channel.setObserver(&observer);
        channel.setTimeout(0, 7000, 1);
        channel.postMessage("standard", "VELTRA4", 1, "text");
        QCOMPARE(observer.seen, QStringList({"0 7000 1", "standard VELTRA4 1 text"}));
        Receiver receiver;
        QCOMPARE(channel.addMessageReceiver("one name", &receiver), 0);
        channel.deliverMessage(1, "Veltra2", "v4.1");
        QCOMPARE(channel.removeMessageReceiver("another", &receiver), 0);
        channel.deliverMessage(1, "Veltra2", "v4.2");
        QCOMPARE(receiver.received, QByteArrayList{"Veltra2 v4.1"});
        QCOMPARE(controller.connectionCount(), 0);
    }

    // What comes is not right
    void whatIsNoAnswerFails_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("outcome");
        QTest::newRow("nonsense") << QByteArray("nonsense\n") << garbled;
        QTest::newRow("nothing") << QByteArray("\n") << garbled;
        QTest::newRow("no result") << QByteArray("1\n") << garbled;
        QTest::newRow("wrong result") << QByteArray("1 maybe\n") << garbled;
        QTest::newRow("wrong escape") << QByteArray("1 ok %zz\n") << garbled;
        QTest::newRow("binary") << QByteArray("\x00\xff\x01\n", 4) << garbled;
        QTest::newRow("answer to nothing asked") << QByteArray("2 ok x\n") << garbled;
        QTest::newRow("overlong line") << QByteArray(5000, 'x') + '\n' << garbled;
        QTest::newRow("endless line") << QByteArray(200000, 'x') << garbled;
        QTest::newRow("sent away") << QByteArray("0 error too many clients\n") << noContact;
    }

    // Whatever came, the channel begins anew.
    void whatIsNoAnswerFails()
    {
        QFETCH(const QByteArray, bytes);
        bool isFirst = true;
        FakeController controller([&](FakeController &self, const Request &request) {
            if (isFirst) {
                isFirst = false;
                self.send(bytes);
            } else {
                echo(self, request);
            }
        });
        NetworkChannel channel(controller.address());
        QTEST(ask(channel, "x"), "outcome");
        QCOMPARE(ask(channel, "y"), QByteArray("y"));
        QCOMPARE(controller.connectionCount(), 2);
    }

    void anAnswerThatIsTooLongForACallerFails_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("long") << QByteArray(200, 'x');
        QTest::newRow("very long") << QByteArray(4000, 'x');
        QTest::newRow("with a NUL") << QByteArray("a\0b", 3);
        QTest::newRow("two lines") << QByteArray("a\nb");
    }

    void anAnswerThatIsTooLongForACallerFails()
    {
        QFETCH(const QByteArray, text);
        FakeController controller([&text](FakeController &self, const Request &request) {
            self.answer(request, request.command == "x" ? text : request.command);
        });
        NetworkChannel channel(controller.address());
        QCOMPARE(ask(channel, "x"), garbled);
        QCOMPARE(ask(channel, "y"), QByteArray("y"));
        QCOMPARE(controller.connectionCount(), 1);
    }

    void aCommandThatIsTooLongIsNotSent()
    {
        FakeController controller(echo);
        NetworkChannel channel(controller.address());
        QCOMPARE(ask(channel, QByteArray(5000, 'x').constData()), refused);
        QCOMPARE(ask(channel, QByteArray(2000, '%').constData()), refused);
        QCOMPARE(ask(channel, "y"), QByteArray("y"));
        QCOMPARE(controller.requestCount(), 1);
    }

    // Nothing comes
    void theTimeoutIsHonoured()
    {
        FakeController controller(greetOnly);
        NetworkChannel channel(controller.address());
        channel.setTimeout(0, 30, 1);
        QCOMPARE(ask(channel, "x"), timedOut);
    }

    // Each line is an answer, but never the one that is waited for.
    void theTimeoutHoldsForEndlessChatter()
    {
        std::atomic<bool> isToEnd{false};
        FakeController controller([&isToEnd](FakeController &self, const Request &request) {
            if (request.command == "first") {
                self.answer(request, "x");
                return;
            }
            while (!isToEnd) {
                self.send("1 ok again\n");
            }
        });
        NetworkChannel channel(controller.address());
        QCOMPARE(ask(channel, "first"), QByteArray("x"));
        channel.setTimeout(0, 50, 1);
        const QByteArray outcome = ask(channel, "second");
        isToEnd = true;
        QCOMPARE(outcome, timedOut);
    }

    void aLateAnswerIsNotTakenForTheNext()
    {
        QVector<Request> unanswered;
        FakeController controller([&unanswered](FakeController &self, const Request &request) {
            unanswered << request;
            if (request.command != "first") {
                for (const Request &late : qAsConst(unanswered)) {
                    self.answer(late, "to the " + late.command);
                }
                unanswered.clear();
            }
        });
        NetworkChannel channel(controller.address());
        QCOMPARE(ask(channel, "hello"), QByteArray("to the hello"));
        channel.setTimeout(0, 30, 1);
        QCOMPARE(ask(channel, "first"), timedOut);
        channel.setTimeout(0, 20000, 1);
        QCOMPARE(ask(channel, "second"), QByteArray("to the second"));
        QCOMPARE(controller.connectionCount(), 1);
    }

    void aSilentControllerIsLeftAlone()
    {
        FakeController controller(greetOnly);
        NetworkChannel channel(controller.address());
        channel.setTimeScale(endless);
        fallSilent(channel);
        for (int i = 0; i < 1000; ++i) {
            QCOMPARE(ask(channel, "x"), timedOut);
        }
        QCOMPARE(channel.contact(), Contact::Silent);
        QTRY_COMPARE(controller.requestCount(), 3);
    }

    void itIsAskedAgainAfterAPause()
    {
        int count = 0;
        FakeController controller([&count](FakeController &self, const Request &request) {
            if (++count == 1 || count > 3) {
                echo(self, request);
            }
        });
        NetworkChannel channel(controller.address());
        channel.setTimeScale(0.01);
        channel.setTimeout(0, 1000000, 1);
        QCOMPARE(ask(channel, "hello"), QByteArray("hello"));
        channel.setTimeout(0, 3000, 1);
        QCOMPARE(ask(channel, "x"), timedOut);
        QCOMPARE(ask(channel, "x"), timedOut);
        channel.setTimeout(0, 1000000, 1);
        QTRY_COMPARE(ask(channel, "y"), QByteArray("y"));
    }

    void aLateAnswerEndsTheSilence()
    {
        std::atomic<bool> isToAnswer{true};
        FakeController controller([&isToAnswer](FakeController &self, const Request &request) {
            while (!isToAnswer) {
                QThread::msleep(1);
            }
            echo(self, request);
        });
        NetworkChannel channel(controller.address());
        channel.setTimeScale(endless);
        fallSilent(channel, [&isToAnswer] { isToAnswer = false; });
        QCOMPARE(ask(channel, "x"), timedOut);
        isToAnswer = true;
        QTRY_COMPARE(ask(channel, "y"), QByteArray("y"));
    }

    // The connection is lost
    void withoutAControllerCommandsFail()
    {
        NetworkChannel channel(deadAddress());
        QCOMPARE(ask(channel, "x"), noContact);
        QCOMPARE(ask(channel, "x"), noContact);
        QVERIFY(channel.sendCommand("x") != 0);
        QCOMPARE(channel.contact(), Contact::Lost);
    }

    void anUnknownHostIsNoContact()
    {
        NetworkChannel channel({"no-such-host.invalid", 4711});
        channel.setTimeout(0, 1000, 1);
        const QByteArray outcome = ask(channel, "x");
        QVERIFY2(outcome == noContact || outcome == timedOut, outcome.constData());
    }

    void aConnectionThatIsNotAcceptedTimesOut()
    {
        const FullListener listener;
        NetworkChannel channel(listener.address());
        channel.setTimeout(0, 50, 1);
        QCOMPARE(ask(channel, "x"), timedOut);
        QCOMPARE(channel.contact(), Contact::Silent);
    }

    void aConnectionThatBreaksFailsTheCommandOnly_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("before the answer") << QByteArray();
        QTest::newRow("in the middle of the answer") << QByteArray("1 ok hal");
        QTest::newRow("before the line's end") << QByteArray("1 ok half");
    }

    void aConnectionThatBreaksFailsTheCommandOnly()
    {
        QFETCH(const QByteArray, bytes);
        FakeController controller([&bytes](FakeController &self, const Request &request) {
            if (request.command == "x") {
                self.send(bytes);
                self.closeConnection();
            } else {
                echo(self, request);
            }
        });
        NetworkChannel channel(controller.address());
        QCOMPARE(ask(channel, "x"), noContact);
        QCOMPARE(ask(channel, "y"), QByteArray("y"));
        QCOMPARE(controller.requestCount(), 2); // what failed is not sent again
    }

    void aConnectionThatBrokeBeforeIsMadeAnew()
    {
        FakeController controller([](FakeController &self, const Request &request) {
            echo(self, request);
            self.closeConnection();
        });
        NetworkChannel channel(controller.address());
        for (int i = 1; i <= 5; ++i) {
            QCOMPARE(ask(channel, "x"), QByteArray("x"));
            QTRY_COMPARE(channel.contact(), Contact::Lost);
        }
        QCOMPARE(controller.connectionCount(), 5);
    }

    void theContactIsKnown()
    {
        QVector<Contact> contacts;
        FakeController controller([](FakeController &self, const Request &request) {
            if (request.command == "close") {
                self.closeConnection();
            } else if (request.command != "silence") {
                echo(self, request);
            }
        });
        NetworkChannel channel(controller.address());
        channel.setContactCallback([&] { contacts << channel.contact(); });
        QCOMPARE(channel.contact(), Contact::Unknown);
        ask(channel, "x");
        ask(channel, "x");
        ask(channel, "close");
        ask(channel, "x");
        channel.setTimeout(0, 30, 1);
        ask(channel, "silence");
        channel.setTimeout(0, 20000, 1);
        ask(channel, "x");
        QCOMPARE(contacts,
                 QVector<Contact>({Contact::Connected, Contact::Lost, Contact::Connected,
                                   Contact::Silent, Contact::Connected}));
    }

    void aLossIsNoticedByTheEventLoop()
    {
        std::optional<FakeController> controller(std::in_place, echo);
        NetworkChannel channel(controller->address());
        QCOMPARE(ask(channel, "x"), QByteArray("x"));
        controller.reset();
        QTRY_COMPARE(channel.contact(), Contact::Lost);
    }

    void soIsALateAnswer()
    {
        std::atomic<bool> isToAnswer{false};
        FakeController controller([&isToAnswer](FakeController &self, const Request &request) {
            while (request.command == "late" && !isToAnswer) {
                QThread::msleep(1);
            }
            echo(self, request);
        });
        NetworkChannel channel(controller.address());
        QCOMPARE(ask(channel, "x"), QByteArray("x"));
        channel.setTimeout(0, 30, 1);
        QCOMPARE(ask(channel, "late"), timedOut);
        QCOMPARE(channel.contact(), Contact::Silent);
        isToAnswer = true;
        QTRY_COMPARE(channel.contact(), Contact::Connected);
    }
};

VELTRA4_TEST(TestNetworkChannel)
#include "tst_networkchannel.moc"
