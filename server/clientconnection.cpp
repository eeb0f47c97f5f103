#include "server/clientconnection.h"

#include "server/servedcontroller.h"

#include <QTcpSocket>

namespace {

constexpr int readBufferSize = 64 * 1024;
constexpr int mostUnreadAnswers = 256 * 1024; // bytes
constexpr int partingMs = 500;

} // namespace

ClientConnection::ClientConnection(QTcpSocket *socket, ServedController &controller,
                                   const ClientLimits &limits, QObject *parent)
    : QObject(parent)
    , m_socket(socket)
    , m_controller(controller)
    , m_limits(limits)
{
    m_socket->setParent(this);
    m_socket->setReadBufferSize(readBufferSize);
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_socket->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    connect(m_socket, &QTcpSocket::readyRead, this, &ClientConnection::read);
    connect(m_socket, &QTcpSocket::disconnected, this, &ClientConnection::finished);
    for (QTimer *timer : {&m_answerTimer, &m_idleTimer, &m_unfinishedLineTimer}) {
        timer->setSingleShot(true);
    }
    connect(&m_answerTimer, &QTimer::timeout, this, &ClientConnection::answerAtLast);
    connect(&m_idleTimer, &QTimer::timeout, this,
            [this] { sendAway(QStringLiteral("no command for too long")); });
    connect(&m_unfinishedLineTimer, &QTimer::timeout, this,
            [this] { sendAway(QStringLiteral("the line was not finished")); });
    watchTheClock();
}

void ClientConnection::read()
{
    if (m_answerTimer.isActive()) {
        return; // what arrives waits in the socket, and then in the client
    }
    m_lines.add(m_socket->readAll());
    if (m_isSentAway) {
        m_lines = LineCutter();
        return;
    }
    work();
}

void ClientConnection::work()
{
    while (!m_answerTimer.isActive() && !m_isSentAway) {
        const std::optional<QByteArray> line = m_lines.next();
        if (!line) {
            break;
        }
        execute(*line);
    }
    if (m_lines.isOverlong()) {
        sendAway(QStringLiteral("the line is too long"));
    }
    watchTheClock();
}

void ClientConnection::execute(const QByteArray &line)
{
    const std::optional<WireProtocol::Request> request = WireProtocol::readRequest(line);
    if (!request) {
        answer({WireProtocol::noRequest, Reply::refused(QStringLiteral("not a request"))});
        return;
    }
    const ServedController::Outcome outcome = m_controller.execute(m_client, request->command);
    m_heldAnswer = {request->id, outcome.reply};
    if (outcome.delayMs > 0) {
        m_answerTimer.start(outcome.delayMs);
    } else {
        answer(m_heldAnswer);
    }
}

void ClientConnection::answerAtLast()
{
    answer(m_heldAnswer);
    read();
}

void ClientConnection::answer(const WireProtocol::Answer &answer)
{
    m_socket->write(WireProtocol::lineOf(answer));
    if (m_socket->bytesToWrite() > mostUnreadAnswers) { // it asks, but does not read
        m_isSentAway = true;
        m_socket->abort();
    }
}

void ClientConnection::watchTheClock()
{
    if (m_isSentAway) {
        return;
    }
    m_idleTimer.start(m_limits.idleMs);
    if (!m_lines.hasBegun() || m_answerTimer.isActive()) {
        m_unfinishedLineTimer.stop();
    } else if (!m_unfinishedLineTimer.isActive()) {
        m_unfinishedLineTimer.start(m_limits.unfinishedLineMs);
    }
}

// What the client is still sending is read and dropped for a moment: a connection that is closed
// over unread bytes is reset, and the reason would be lost with it.
void ClientConnection::sendAway(const QString &reason)
{
    if (m_isSentAway) {
        return;
    }
    m_isSentAway = true;
    m_lines = LineCutter();
    m_idleTimer.stop();
    m_unfinishedLineTimer.stop();
    answer({WireProtocol::noRequest, Reply::refused(reason)});
    QTimer::singleShot(partingMs, m_socket, &QTcpSocket::abort);
}
