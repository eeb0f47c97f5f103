#pragma once

#include "network/hostport.h"
#include "network/wireprotocol.h"

#include <QTcpSocket>
#include <QThread>

#include <atomic>
#include <functional>

/// The other end of a connection as a test wants it, in a thread of its own: serves one client
/// after the other and leaves the answers to a script.
class FakeController final : private QThread
{
public:
    /// Called in the controller's thread for each request that can be read.
    using Script =
        std::function<void(FakeController &controller, const WireProtocol::Request &request)>;

    /// Listens when this returns. @p host is an address of this machine.
    explicit FakeController(Script script, const QString &host = "127.0.0.1");
    ~FakeController() override;

    HostPort address() const { return m_address; }
    int connectionCount() const { return m_connectionCount; }
    int requestCount() const { return m_requestCount; }

    /// @name For the script
    /// @{
    /// Sends @p bytes and does not return before they are under way.
    void send(const QByteArray &bytes);
    void answer(const WireProtocol::Request &request, const QByteArray &text);
    void closeConnection() { m_client->disconnectFromHost(); }
    /// @}

private:
    void run() override;
    void serve(QTcpSocket *client);

    const Script m_script;
    HostPort m_address;
    std::atomic<bool> m_isListening{false};
    std::atomic<bool> m_isToEnd{false};
    std::atomic<int> m_connectionCount{0};
    std::atomic<int> m_requestCount{0};
    QTcpSocket *m_client = nullptr;
};
