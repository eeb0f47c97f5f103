#pragma once

#include "network/hostport.h"
#include "server/clientconnection.h"

#include <QHostAddress>
#include <QTcpServer>

class ServedController;

/// Serves a controller to several clients over TCP, in the line protocol of
/// network/wireprotocol.h.
class ControllerServer : public QObject
{
    Q_OBJECT

public:
    /// One more is sent away.
    static constexpr int mostClients = 32;

    /// @p controller is not owned and must outlive the server.
    explicit ControllerServer(ServedController &controller, const ClientLimits &limits = {});

    /// Begins to serve; port 0 stands for any free one.
    /// @return whether it could; if not, @p problem says why
    bool listen(const QHostAddress &address, quint16 port, QString *problem);

    /// Where it serves.
    HostPort address() const;

private:
    void receiveClients();
    void receive(QTcpSocket *socket);

    ServedController &m_controller;
    const ClientLimits m_limits;
    QTcpServer m_server;
    int m_clientCount = 0;
};
