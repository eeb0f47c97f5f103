#include "tests/network/fakecontroller.h"

#include "network/linecutter.h"

#include <QNetworkProxy>
#include <QTcpServer>
#include <QTest>

#include <memory>
#include <utility>

namespace {

constexpr int sliceMs = 10; // how often the thread looks whether it is to end

} // namespace

FakeController::FakeController(Script script, const QString &host)
    : m_script(std::move(script))
    , m_address{host, 0}
{
    start();
    QTRY_VERIFY(m_isListening);
}

FakeController::~FakeController()
{
    m_isToEnd = true;
    wait();
}

void FakeController::send(const QByteArray &bytes)
{
    m_client->write(bytes);
    while (m_client->bytesToWrite() > 0 && m_client->waitForBytesWritten()) { }
}

void FakeController::answer(const WireProtocol::Request &request, const QByteArray &text)
{
    send(WireProtocol::lineOf(WireProtocol::Answer{request.id, Reply{true, text, {}}}));
}

void FakeController::run()
{
    QTcpServer server;
    server.setProxy(QNetworkProxy::NoProxy);
    if (!server.listen(QHostAddress(m_address.host))) {
        qFatal("%s", qPrintable(server.errorString()));
    }
    m_address.port = server.serverPort();
    m_isListening = true;
    while (!m_isToEnd) {
        if (server.waitForNewConnection(sliceMs)) {
            const std::unique_ptr<QTcpSocket> client(server.nextPendingConnection());
            ++m_connectionCount;
            serve(client.get());
        }
    }
}

void FakeController::serve(QTcpSocket *client)
{
    m_client = client;
    LineCutter lines;
    while (!m_isToEnd && client->state() == QAbstractSocket::ConnectedState) {
        client->waitForReadyRead(sliceMs);
        lines.add(client->readAll());
        while (const std::optional<QByteArray> line = lines.next()) {
            const auto request = WireProtocol::readRequest(*line);
            if (request) {
                ++m_requestCount;
                m_script(*this, *request);
            }
        }
    }
}
