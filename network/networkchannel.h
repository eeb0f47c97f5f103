#pragma once

#include "network/hostport.h"
#include "network/linecutter.h"
#include "network/wireprotocol.h"
#include "simulator/messagechannel.h"

#include <QDeadlineTimer>
#include <QTcpSocket>

#include <functional>
#include <utility>

/// A command channel that leads to a controller in the network.
///
/// Each command blocks until it is answered, at most for the time-out in force, which covers
/// connecting as well; meanwhile no event loop runs. What the channel does about trouble:
///
///  - A lost connection is made anew by the next command. The controller knows a new client then,
///    without the transfers and passwords of the old one.
///  - A command whose answer was lost on the way fails; it may have been executed, and is not sent
///    again.
///  - An answer that comes after its command has timed out is dropped.
///  - After two time-outs in a row the controller counts as silent, and commands fail at once for a
///    while: procedures that go on after failures would stand still for hours otherwise.
class NetworkChannel final : public MessageChannel
{
public:
    static constexpr int defaultTimeoutMs = 5000;
    /// How long commands fail at once after the controller fell silent.
    static constexpr int silencePauseMs = 2000;

    /// Results of the operations apart from 0.
    enum Result {
        Refused = 1, ///< the controller refused the command
        TimedOut = 2,
        NoContact = 4, ///< there is no connection, or it broke before the answer came
        Garbled = 5    ///< what came is no answer
    };

    /// What is known since the last command.
    enum class Contact { Unknown, Connected, Silent, Lost };

    /// Connects with the first command.
    explicit NetworkChannel(HostPort controller);
    ~NetworkChannel();
    Q_DISABLE_COPY_MOVE(NetworkChannel)

    /// Multiplies all time-outs and pauses with @p scale, so that a test need not wait.
    void setTimeScale(double scale) { m_timeScale = scale; }

    Contact contact() const { return m_contact; }
    /// @p changed is called when the contact has changed: within a command before it returns, or
    /// from the event loop. It must not send commands.
    void setContactCallback(std::function<void()> changed)
    {
        m_contactChanged = std::move(changed);
    }

    int setTimeout(int channel, int milliseconds, int flag) override;

private:
    int transact(Operation operation, const QByteArray &command, QByteArray *answer) override;
    QString failureReason() const override { return m_failureReason; }

    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    void lookForNews();
    int connectUntil(const QDeadlineTimer &deadline);
    int awaitAnswer(const QDeadlineTimer &deadline, QByteArray *answer);
    int takeLines(bool *isAnswered, QByteArray *answer);
    int takeAnswer(const Reply &reply, QByteArray *answer);

    int failed(Result result, const QString &reason);
    int timedOut();
    int broken(Result result, const QString &reason);
    void forgetSilence();
    void setContact(Contact contact);
    int scaled(int milliseconds) const;

    const HostPort m_controller;
    double m_timeScale = 1;
    int m_timeoutMs = defaultTimeoutMs;
    int m_lastId = 0; ///< of the requests of this connection
    LineCutter m_lines;
    int m_timeoutsInARow = 0;
    QDeadlineTimer m_silence{0}; ///< until when commands fail at once
    Contact m_contact = Contact::Unknown;
    std::function<void()> m_contactChanged;
    QString m_failureReason;
    QTcpSocket m_socket;
};
