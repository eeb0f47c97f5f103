#pragma once

#include "hostapi/iomanager.h"
#include "hostapi/messagereceiver.h"

#include <QDeadlineTimer>
#include <QTcpSocket>
#include <QVector>

#include <cstdarg>
#include <functional>

// The variable arguments can be taken only by the function that has them.
#define EXCHANGE(target, format)                                                                   \
    va_list arguments;                                                                             \
    va_start(arguments, format);                                                                   \
    const QByteArray command = formatted(format, arguments);                                       \
    va_end(arguments);                                                                             \
    QByteArray answer;                                                                             \
    return exchange(command, &answer) && take(answer, target) ? success : failure

/// The command channel to a controller that takes one line of text for each command.
///
/// While it waits for an answer it handles no events: neither users nor timers get in between two
/// commands of the plug-in.
class TcpChannel final : public IOManager
{
public:
    /// Shows one line of text.
    using Pane = std::function<void(const QString &line)>;

    /// Connects with the first command.
    TcpChannel(const QString &host, quint16 port, const Pane &events)
        : m_host(host)
        , m_port(port)
        , m_events(events)
    {
    }

    /// Tells the plug-in what the host has to say.
    void deliver(const char *source, const char *text)
    {
        const QVector<MessageReceiver *> receivers = m_receivers;
        for (MessageReceiver *receiver : receivers) {
            if (m_receivers.contains(receiver)) { // an earlier one may have removed it
                receiver->receiveMessage(0, source, text);
            }
        }
    }

    int setTimeout(int, int milliseconds, int) override { return m_timeoutMs = milliseconds, 0; }
    int sendCommandReply(char *reply, const char *format, ...) override { EXCHANGE(reply, format); }
    int queryString(char *reply, const char *format, ...) override { EXCHANGE(reply, format); }
    int queryInt(int *value, const char *format, ...) override { EXCHANGE(value, format); }
    int queryDouble(double *value, const char *format, ...) override { EXCHANGE(value, format); }
    int queryBool(bool *value, const char *format, ...) override { EXCHANGE(value, format); }
    int sendCommand(const char *format, ...) override { EXCHANGE(nullptr, format); }

    int postMessage(const char *category, const char *source, int, const char *text) override
    {
        m_events(QString::fromLatin1(category) + " " + source + ": " + QString::fromLatin1(text));
        return success;
    }
    int addMessageReceiver(const char *, MessageReceiver *receiver) override
    {
        m_receivers.append(receiver);
        return success;
    }
    int removeMessageReceiver(const char *, MessageReceiver *receiver) override
    {
        return m_receivers.removeAll(receiver) > 0 ? success : failure; // whatever the name
    }

private:
    enum Result { success, failure };
    enum { replySize = 200, longestCommand = 1000 }; // bytes, the NUL included
    enum { failuresUntilPause = 2, pauseMs = 2000 };

    // Not by QString::vasprintf(), for which texts are UTF-8. A command that does not fit is null.
    static QByteArray formatted(const char *format, va_list arguments)
    {
        char command[longestCommand];
        const int length = std::vsnprintf(command, sizeof command, format, arguments);
        return length >= 0 && length < longestCommand ? QByteArray(command) : QByteArray();
    }

    // Each leaves its target alone if the answer is of another kind.
    static bool take(const QByteArray & /*answer*/, std::nullptr_t) { return true; }
    static bool take(const QByteArray &answer, char *reply)
    {
        return answer.size() < replySize && qstrcpy(reply, answer.constData()) != nullptr;
    }
    static bool take(const QByteArray &answer, bool *value)
    {
        return takeIf(answer == "yes" || answer == "no", answer == "yes", value);
    }
    static bool take(const QByteArray &answer, int *value)
    {
        bool isNumber = false;
        const int number = answer.toInt(&isNumber);
        return takeIf(isNumber, number, value);
    }
    static bool take(const QByteArray &answer, double *value)
    {
        bool isNumber = false;
        const double number = answer.toDouble(&isNumber);
        return takeIf(isNumber, number, value);
    }
    template <typename Value>
    static bool takeIf(bool isOfItsKind, Value taken, Value *value)
    {
        if (isOfItsKind) {
            *value = taken;
        }
        return isOfItsKind;
    }

    bool exchange(const QByteArray &command, QByteArray *answer)
    {
        const QDeadlineTimer deadline(m_timeoutMs); // is for connecting, too
        if (command.isNull() || !m_pause.hasExpired()) {
            return false;
        }
        if (!isConnectedUntil(deadline)) {
            return giveUp();
        }
        m_socket.write(QByteArray::number(++m_lastId) + ' ' + command.toPercentEncoding(" ")
                       + '\n');
        while (!takeAnswer(answer)) {
            if (!m_socket.waitForReadyRead(int(deadline.remainingTime()))) {
                return giveUp();
            }
        }
        m_failuresInARow = 0;
        return !answer->isNull();
    }

    // A controller that is reached anew has forgotten the transfers that were under way.
    bool isConnectedUntil(const QDeadlineTimer &deadline)
    {
        if (isConnected()) {
            m_socket.waitForReadyRead(0); // notices that it was closed meanwhile
        }
        if (isConnected()) {
            return true;
        }
        m_socket.abort();
        m_socket.connectToHost(m_host, m_port);
        return m_socket.waitForConnected(int(deadline.remainingTime()));
    }

    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }

    // False as long as there is none; null if the controller has refused the command.
    bool takeAnswer(QByteArray *answer)
    {
        while (m_socket.canReadLine()) {
            const QByteArray line = m_socket.readLine().chopped(1);
            const QByteArray id = QByteArray::number(m_lastId);
            if (line.startsWith(id + " ok")) {
                *answer = QByteArray::fromPercentEncoding(line.mid(id.size() + 4));
                *answer = answer->isNull() ? "" : *answer;
                return true;
            }
            if (line.startsWith(id + " error")) {
                return true;
            } // all others come too late for their commands
        }
        return false;
    }

    // The plug-in goes on after failures, through a thousand chunks if need be.
    bool giveUp()
    {
        if (++m_failuresInARow >= failuresUntilPause) {
            m_pause.setRemainingTime(pauseMs);
        }
        return false;
    }

    const QString m_host;
    const quint16 m_port;
    const Pane m_events;
    QVector<MessageReceiver *> m_receivers;
    QTcpSocket m_socket;
    int m_timeoutMs = 5000; // until the first setTimeout()
    int m_lastId = 0;
    int m_failuresInARow = 0;
    QDeadlineTimer m_pause{0}; // until then commands fail at once
};
