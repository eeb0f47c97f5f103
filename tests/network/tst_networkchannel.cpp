#include "network/networkchannel.h"

#include "simulator/channelobserver.h"
#include "tests/network/channelcontract.h"
#include "tests/support/testmain.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QTcpServer>
#include <QTest>

#include <array>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using Request = WireProtocol::Request;
using Contact = NetworkChannel::Contact;

// So long that what waits for it fails by the test's own time-out.
constexpr double endless = 100000;

const QByteArray refused = "(1)";
const QByteArray timedOut = "(2)";
const QByteArray noContact = "(4)";
const QByteArray garbled = "(5)";

// An address where nobody listens.
HostPort deadAddress()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return {"127.0.0.1", server.serverPort()};
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

    HostPort address() const { return {"127.0.0.1", ntohs(m_address.sin_port)}; }

private:
    const int m_listener;
    sockaddr_in m_address = {};
    std::array<int, 4> m_clients = {};
};

} // namespace

class TestNetworkChannel : public ChannelContract
{
    Q_OBJECT

private:
    std::shared_ptr<IOManager> channelTo(const HostPort &controller) const override
    {
        return std::make_shared<NetworkChannel>(controller);
    }

private slots:
    // In good times
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

    void namesAndBothKindsOfAddressesAreFound()
    {
        const QVector<QPair<QString, QString>> cases{
            {"127.0.0.1", "127.0.0.1"}, {"::1", "::1"}, {"127.0.0.1", "localhost"}};
        for (const auto &[listening, host] : cases) {
            if (!QTcpServer().listen(QHostAddress(listening))
                || QHostInfo::fromName(host).addresses().isEmpty()) {
                qInfo("this machine has no %s", qPrintable(host));
                continue;
            }
            FakeController controller(echo, listening);
            NetworkChannel channel({host, controller.address().port});
            QCOMPARE(ask(channel, "x"), "x");
        }
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
        QCOMPARE(ask(channel, "y"), "y");
        QCOMPARE(controller.connectionCount(), 2);
    }

    void anAnswerThatNoCallerCanTakeFails()
    {
        const QByteArrayList answers{QByteArray(200, 'x'), QByteArray(4000, 'x'),
                                     QByteArray("a\0b", 3), "a\nb"};
        FakeController controller([&answers](FakeController &self, const Request &request) {
            self.answer(request, answers.value(request.command.toInt(), request.command));
        });
        NetworkChannel channel(controller.address());
        for (int i = 0; i < answers.size(); ++i) {
            QCOMPARE(ask(channel, QByteArray::number(i).constData()), garbled);
            QCOMPARE(ask(channel, "9"), "9");
        }
        QCOMPARE(controller.connectionCount(), 1);
    }

    void aCommandThatIsTooLongIsNotSent()
    {
        FakeController controller(echo);
        NetworkChannel channel(controller.address());
        QCOMPARE(ask(channel, QByteArray(5000, 'x').constData()), refused);
        QCOMPARE(ask(channel, QByteArray(2000, '%').constData()), refused);
        QCOMPARE(ask(channel, "y"), "y");
        QCOMPARE(controller.requestCount(), 1);
    }

    // Nothing comes
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
        QCOMPARE(ask(channel, "first"), "x");
        channel.setTimeout(0, 50, 1);
        const QByteArray outcome = ask(channel, "second");
        isToEnd = true;
        QCOMPARE(outcome, timedOut);
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
        QCOMPARE(ask(channel, "hello"), "hello");
        isToAnswer = false;
        channel.setTimeout(0, 0, 1);
        QCOMPARE(ask(channel, "x"), timedOut);
        QCOMPARE(ask(channel, "x"), timedOut);
        QCOMPARE(channel.contact(), Contact::Silent);
        channel.setTimeout(0, 20000, 1);
        QCOMPARE(ask(channel, "x"), timedOut);
        isToAnswer = true;
        QTRY_COMPARE(ask(channel, "y"), "y");
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

    void aConnectionThatBreaksFailsTheCommandOnly()
    {
        // Before the answer, in the middle of it, before the line's end.
        for (const QByteArray &bytes : QByteArrayList{"", "1 ok hal", "1 ok half"}) {
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
            QCOMPARE(ask(channel, "y"), "y");
            QCOMPARE(controller.requestCount(), 2); // what failed is not sent again
        }
    }

    void aConnectionThatBrokeBeforeIsMadeAnew()
    {
        FakeController controller([](FakeController &self, const Request &request) {
            echo(self, request);
            self.closeConnection();
        });
        NetworkChannel channel(controller.address());
        for (int i = 1; i <= 5; ++i) {
            QCOMPARE(ask(channel, "x"), "x");
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
        QCOMPARE(ask(channel, "x"), "x");
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
        QCOMPARE(ask(channel, "x"), "x");
        channel.setTimeout(0, 30, 1);
        QCOMPARE(ask(channel, "late"), timedOut);
        QCOMPARE(channel.contact(), Contact::Silent);
        isToAnswer = true;
        QTRY_COMPARE(channel.contact(), Contact::Connected);
    }
};

VELTRA4_TEST(TestNetworkChannel)
#include "tst_networkchannel.moc"
