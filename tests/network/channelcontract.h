#pragma once

#include "hostapi/iomanager.h"
#include "tests/network/fakecontroller.h"

#include <QObject>

#include <memory>

/// Answers each command with itself.
void echo(FakeController &controller, const WireProtocol::Request &request);
/// Answers "hello" and nothing else.
void greetOnly(FakeController &controller, const WireProtocol::Request &request);

/// What the channel answers to @p command, or the result in brackets.
QByteArray ask(IOManager &channel, const char *command);

/// What a channel to a controller in the network has to do, whoever wrote it. The test of one
/// derives from this and has these tests run together with its own.
class ChannelContract : public QObject
{
    Q_OBJECT

protected:
    virtual std::shared_ptr<IOManager> channelTo(const HostPort &controller) const = 0;

private slots:
    void answersAreTaken();
    void whatIsOfAnotherKindLeavesTheValueAlone();
    void anyByteArrivesAtTheController();
    void anAnswerMayComeInPieces();
    void anAnswerHasAtMost199Bytes();
    void refusalsAreNoSilence();
    void aLateAnswerIsNotTakenForTheNext();
    void aSilentControllerIsAskedAgainAfterAPause();
    void aLostConnectionIsMadeAnew();
    void noEventLoopRunsMeanwhile();
};
