#include "tcpchannel.h"

#include "tests/network/channelcontract.h"
#include "tests/support/testmain.h"

#include <QTest>

namespace {

TcpChannel channelTo(const FakeController &controller, const TcpChannel::Pane &pane = {})
{
    return {controller.address().host, controller.address().port, pane};
}

const QByteArray failed = "(1)";

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
class TestTcpChannel : public ChannelContract
{
    Q_OBJECT

private:
    std::shared_ptr<IOManager> channelTo(const HostPort &controller) const override
    {
        return std::make_shared<TcpChannel>(controller.host, controller.port, TcpChannel::Pane());
    }

private slots:
    void aCommandThatIsTooLongIsNotSent()
    {
        const FakeController controller(echo);
        TcpChannel channel = ::channelTo(controller);
        QCOMPARE(ask(channel, QByteArray(1000, 'x').constData()), failed);
        QCOMPARE(controller.connectionCount(), 0);
    }

    void withoutAControllerCommandsFail()
    {
        TcpChannel channel("127.0.0.1", 1, {});
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(ask(channel, "x"), failed);
        }
    }

    void messagesAreShown()
    {
        const FakeController controller(echo);
        QStringList shown;
        TcpChannel channel =
            ::channelTo(controller, [&shown](const QString &line) { shown << line; });
        channel.postMessage("standard", "VELTRA4", 1, "no config \"M\xfcller\"");
        QCOMPARE(shown,
                 QStringList(QString::fromLatin1("standard VELTRA4: no config \"M\xfcller\"")));
        QCOMPARE(controller.connectionCount(), 0);
    }

    void receiversGoByThePointer()
    {
        TcpChannel channel("127.0.0.1", 1, {});
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
