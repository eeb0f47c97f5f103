#include "tests/network/channelcontract.h"

#include <QTimer>
#include <QTest>

using Request = WireProtocol::Request;

void echo(FakeController &controller, const Request &request)
{
    controller.answer(request, request.command);
}

void greetOnly(FakeController &controller, const Request &request)
{
    if (request.command == "hello") {
        echo(controller, request);
    }
}

QByteArray ask(IOManager &channel, const char *command)
{
    char reply[200] = "untouched";
    const int result = channel.queryString(reply, "%s", command);
    if (result != 0 && qstrcmp(reply, "untouched") != 0) {
        return "touched in spite of " + QByteArray::number(result);
    }
    return result == 0 ? reply : '(' + QByteArray::number(result) + ')';
}

namespace {

bool isRefused(IOManager &channel, const QByteArray &command)
{
    return ask(channel, command.constData()).startsWith('(');
}

} // namespace

void ChannelContract::answersAreTaken()
{
    const FakeController controller(echo);
    const auto channel = channelTo(controller.address());
    for (const char *text : {"one", " 13 'x' ", "50%", ""}) {
        QCOMPARE(ask(*channel, text), text);
    }
    char reply[200] = "";
    QCOMPARE(channel->sendCommandReply(reply, "%s %s", "veltra2", "ok"), 0);
    QCOMPARE(reply, "veltra2 ok");
    int number = 0;
    QCOMPARE(channel->queryInt(&number, "%02d", 7), 0);
    QCOMPARE(number, 7);
    double fraction = 0;
    QCOMPARE(channel->queryDouble(&fraction, "0.25"), 0);
    QCOMPARE(fraction, 0.25);
    bool isTrue = false;
    QCOMPARE(channel->queryBool(&isTrue, "yes"), 0);
    QVERIFY(isTrue);
    QCOMPARE(channel->queryBool(&isTrue, "no"), 0);
    QVERIFY(!isTrue);
    QCOMPARE(channel->sendCommand("whatever"), 0);
    QCOMPARE(controller.connectionCount(), 1);
}

void ChannelContract::whatIsOfAnotherKindLeavesTheValueAlone()
{
    const FakeController controller(echo);
    const auto channel = channelTo(controller.address());
    int number = 5;
    QVERIFY(channel->queryInt(&number, "many") != 0);
    QCOMPARE(number, 5);
    double fraction = 0.5;
    QVERIFY(channel->queryDouble(&fraction, "half") != 0);
    QCOMPARE(fraction, 0.5);
    bool isTrue = true;
    QVERIFY(channel->queryBool(&isTrue, "perhaps") != 0);
    QVERIFY(isTrue);
}

void ChannelContract::anyByteArrivesAtTheController()
{
    QByteArray command;
    for (int code = 1; code < 256; ++code) {
        command += static_cast<char>(code);
    }
    QByteArray arrived;
    {
        const FakeController controller([&arrived](FakeController &self, const Request &request) {
            arrived = request.command;
            self.answer(request, {});
        });
        QCOMPARE(channelTo(controller.address())->sendCommand("%s", command.constData()), 0);
    }
    QCOMPARE(arrived, command);
}

void ChannelContract::anAnswerMayComeInPieces()
{
    const FakeController controller([](FakeController &self, const Request &request) {
        const QByteArray line = QByteArray::number(request.id) + " ok in%20pieces\n";
        for (const char character : line) {
            self.send(QByteArray(1, character));
        }
    });
    const auto channel = channelTo(controller.address());
    QCOMPARE(ask(*channel, "x"), "in pieces");
    QCOMPARE(ask(*channel, "x"), "in pieces");
}

void ChannelContract::anAnswerHasAtMost199Bytes()
{
    const FakeController controller(echo);
    const auto channel = channelTo(controller.address());
    QCOMPARE(ask(*channel, QByteArray(199, 'x').constData()), QByteArray(199, 'x'));
    QVERIFY(isRefused(*channel, QByteArray(200, 'x')));
    QCOMPARE(ask(*channel, "y"), "y");
}

void ChannelContract::refusalsAreNoSilence()
{
    const FakeController controller([](FakeController &self, const Request &request) {
        self.send(WireProtocol::lineOf(WireProtocol::Answer{request.id, Reply::refused("no")}));
    });
    const auto channel = channelTo(controller.address());
    for (int i = 0; i < 5; ++i) {
        QVERIFY(isRefused(*channel, "x"));
        QVERIFY(channel->sendCommand("x") != 0);
    }
    QCOMPARE(controller.requestCount(), 10);
}

void ChannelContract::aLateAnswerIsNotTakenForTheNext()
{
    const FakeController controller([](FakeController &self, const Request &request) {
        if (request.command == "second") {
            self.answer({request.id - 1, {}}, "too late");
        }
        if (request.command != "first") {
            echo(self, request);
        }
    });
    const auto channel = channelTo(controller.address());
    QCOMPARE(ask(*channel, "hello"), "hello");
    channel->setTimeout(0, 0, 1);
    QVERIFY(isRefused(*channel, "first"));
    channel->setTimeout(0, 20000, 1);
    QCOMPARE(ask(*channel, "second"), "second");
    QCOMPARE(controller.connectionCount(), 1);
}

void ChannelContract::aSilentControllerIsAskedAgainAfterAPause()
{
    const FakeController controller(greetOnly);
    const auto channel = channelTo(controller.address());
    QCOMPARE(ask(*channel, "hello"), "hello");
    channel->setTimeout(0, 0, 1);
    QVERIFY(isRefused(*channel, "x"));
    QVERIFY(isRefused(*channel, "x"));
    channel->setTimeout(0, 20000, 1);
    QVERIFY(isRefused(*channel, "x"));
    QTRY_COMPARE(controller.requestCount(), 3); // it is left alone
    QTRY_COMPARE(ask(*channel, "hello"), "hello");
}

void ChannelContract::aLostConnectionIsMadeAnew()
{
    const FakeController controller([](FakeController &self, const Request &request) {
        if (request.command == "bye") {
            self.closeConnection();
        } else {
            echo(self, request);
        }
    });
    const auto channel = channelTo(controller.address());
    QVERIFY(isRefused(*channel, "bye"));
    QCOMPARE(ask(*channel, "hello"), "hello");
    QCOMPARE(controller.requestCount(), 2); // what failed is not sent again
    QCOMPARE(controller.connectionCount(), 2);
}

void ChannelContract::noEventLoopRunsMeanwhile()
{
    const FakeController controller([](FakeController &self, const Request &request) {
        QThread::msleep(20);
        echo(self, request);
    });
    const auto channel = channelTo(controller.address());
    bool hasRun = false;
    QTimer::singleShot(0, this, [&hasRun] { hasRun = true; });
    QCOMPARE(ask(*channel, "x"), "x");
    QVERIFY(!hasRun);
    QCoreApplication::processEvents();
    QVERIFY(hasRun);
}
