#include "network/networkchannel.h"

#include "network/hostlookup.h"
#include "simulator/channelobserver.h"
#include "simulator/limits.h"

#include <QNetworkProxy>

#include <algorithm>

namespace {

constexpr int readBufferSize = 64 * 1024;
constexpr int timeoutsUntilSilence = 2;

int remainingMs(const QDeadlineTimer &deadline)
{
    return static_cast<int>(deadline.remainingTime());
}

} // namespace

NetworkChannel::NetworkChannel(HostPort controller)
    : m_controller(std::move(controller))
{
    m_socket.setProxy(QNetworkProxy::NoProxy);
    m_socket.setReadBufferSize(readBufferSize);
    QObject::connect(&m_socket, &QTcpSocket::readyRead, &m_socket, [this] {
        forgetSilence();
        if (m_contact == Contact::Silent) {
            setContact(Contact::Connected);
        }
    });
    QObject::connect(&m_socket, &QTcpSocket::disconnected, &m_socket, [this] {
        forgetSilence();
        setContact(Contact::Lost);
    });
}

NetworkChannel::~NetworkChannel()
{
    m_socket.disconnect();
}

int NetworkChannel::setTimeout(int channel, int milliseconds, int flag)
{
    m_timeoutMs = std::max(0, milliseconds);
    if (observer() != nullptr) {
        observer()->timeoutSet(channel, milliseconds, flag);
    }
    return success;
}

int NetworkChannel::transact(Operation /*operation*/, const QByteArray &command, QByteArray *answer)
{
    const QDeadlineTimer deadline(scaled(m_timeoutMs));
    lookForNews();
    if (!m_silence.hasExpired()) {
        return failed(TimedOut, QStringLiteral("the controller is silent"));
    }
    if (!isConnected()) {
        const int result = connectUntil(deadline);
        if (result != success) {
            return result;
        }
    }
    const QByteArray line = WireProtocol::lineOf(WireProtocol::Request{m_lastId + 1, command});
    if (line.size() > WireProtocol::longestLine) {
        return failed(Refused, QStringLiteral("the command is too long"));
    }
    ++m_lastId;
    m_socket.write(line);
    m_socket.flush();
    return awaitAnswer(deadline, answer);
}

// A late answer that has arrived ends the silence. A connection that was lost since the last
// command is noticed before the next one is sent: afterwards nobody would know whether it was
// executed.
void NetworkChannel::lookForNews()
{
    if (isConnected() && m_lastId >= WireProtocol::greatestId) {
        m_socket.abort();
    }
    if (isConnected()) {
        m_socket.waitForReadyRead(0);
    }
}

int NetworkChannel::connectUntil(const QDeadlineTimer &deadline)
{
    m_lastId = 0;
    m_lines = LineCutter();
    QString problem = QStringLiteral("there is no host \"%1\"").arg(m_controller.host);
    const QList<QHostAddress> addresses = addressesOf(m_controller.host, deadline);
    for (int i = 0; i < addresses.size(); ++i) {
        m_socket.connectToHost(addresses.at(i), m_controller.port);
        if (m_socket.waitForConnected(remainingMs(deadline) / (addresses.size() - i))) {
            m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
            return success;
        }
        problem = m_socket.errorString();
        m_socket.abort();
    }
    return deadline.hasExpired() ? timedOut() : broken(NoContact, problem);
}

int NetworkChannel::awaitAnswer(const QDeadlineTimer &deadline, QByteArray *answer)
{
    while (true) {
        bool isAnswered = false;
        m_lines.add(m_socket.readAll());
        const int result = takeLines(&isAnswered, answer);
        if (isAnswered) {
            return result;
        }
        if (!isConnected()) {
            return broken(NoContact, m_socket.errorString());
        }
        if (deadline.hasExpired()) {
            return timedOut();
        }
        m_socket.waitForReadyRead(remainingMs(deadline));
    }
}

// Answers to earlier commands come too late and are dropped.
int NetworkChannel::takeLines(bool *isAnswered, QByteArray *answer)
{
    *isAnswered = true;
    while (const std::optional<QByteArray> line = m_lines.next()) {
        const std::optional<WireProtocol::Answer> read = WireProtocol::readAnswer(*line);
        if (!read || read->id > m_lastId) {
            return broken(Garbled, QStringLiteral("what came is no answer"));
        }
        if (read->id == WireProtocol::noRequest) {
            return broken(NoContact, read->reply.reason);
        }
        if (read->id == m_lastId) {
            return takeAnswer(read->reply, answer);
        }
    }
    if (m_lines.isOverlong()) {
        return broken(Garbled, QStringLiteral("the answer is too long"));
    }
    *isAnswered = false;
    return success;
}

int NetworkChannel::takeAnswer(const Reply &reply, QByteArray *answer)
{
    setContact(Contact::Connected);
    if (!reply.ok) {
        return failed(Refused, reply.reason);
    }
    if (reply.text.size() > Reply::maxLength || !Limits::isLine(reply.text)) {
        return failed(Garbled, QStringLiteral("the answer is not a line of text"));
    }
    *answer = reply.text;
    return success;
}

int NetworkChannel::failed(Result result, const QString &reason)
{
    m_failureReason = reason;
    return result;
}

int NetworkChannel::timedOut()
{
    ++m_timeoutsInARow;
    if (m_timeoutsInARow >= timeoutsUntilSilence) {
        m_silence.setRemainingTime(scaled(silencePauseMs));
    }
    setContact(Contact::Silent);
    return failed(TimedOut, QStringLiteral("no answer within %1 ms").arg(scaled(m_timeoutMs)));
}

int NetworkChannel::broken(Result result, const QString &reason)
{
    failed(result, reason);
    m_socket.abort();
    setContact(Contact::Lost);
    return result;
}

void NetworkChannel::forgetSilence()
{
    m_timeoutsInARow = 0;
    m_silence.setRemainingTime(0);
}

void NetworkChannel::setContact(Contact contact)
{
    if (contact == m_contact) {
        return;
    }
    m_contact = contact;
    if (m_contactChanged) {
        m_contactChanged();
    }
}

int NetworkChannel::scaled(int milliseconds) const
{
    return static_cast<int>(milliseconds * m_timeScale);
}
