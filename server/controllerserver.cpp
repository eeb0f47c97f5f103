#include "server/controllerserver.h"

#include "network/wireprotocol.h"

#include <QNetworkProxy>
#include <QTcpSocket>

namespace {

void refuse(QTcpSocket *socket)
{
    const Reply reply = Reply::refused(QStringLiteral("too many clients"));
    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    socket->write(WireProtocol::lineOf(WireProtocol::Answer{WireProtocol::noRequest, reply}));
    socket->disconnectFromHost();
}

} // namespace

ControllerServer::ControllerServer(ServedController &controller, const ClientLimits &limits)
    : m_controller(controller)
    , m_limits(limits)
{
    m_server.setProxy(QNetworkProxy::NoProxy);
    connect(&m_server, &QTcpServer::newConnection, this, &ControllerServer::receiveClients);
}

bool ControllerServer::listen(const QHostAddress &address, quint16 port, QString *problem)
{
    if (!m_server.listen(address, port)) {
        *problem = QStringLiteral("%1: %2").arg(HostPort{address.toString(), port}.toText(),
                                                m_server.errorString());
        return false;
    }
    return true;
}

HostPort ControllerServer::address() const
{
    return {m_server.serverAddress().toString(), m_server.serverPort()};
}

void ControllerServer::receiveClients()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        receive(socket);
    }
}

void ControllerServer::receive(QTcpSocket *socket)
{
    if (m_clientCount >= mostClients) {
        refuse(socket);
        return;
    }
    ++m_clientCount;
    auto *client = new ClientConnection(socket, m_controller, m_limits, this);
    connect(client, &ClientConnection::finished, this, [this, client] {
        --m_clientCount;
        client->deleteLater();
    });
}
