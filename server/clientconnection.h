#pragma once

#include "network/linecutter.h"
#include "network/wireprotocol.h"
#include "simulator/controllerclient.h"

#include <QObject>
#include <QTimer>

class QTcpSocket;
class ServedController;

/// How long clients may take.
struct ClientLimits
{
    int idleMs = 24 * 3600 * 1000; ///< between two commands
    int unfinishedLineMs = 30000;  ///< from the beginning of a line to its end
};

/// One client of the server: executes its commands in order and answers each before the next.
class ClientConnection : public QObject
{
    Q_OBJECT

public:
    /// Takes @p socket over; @p controller is not owned and must outlive the connection.
    ClientConnection(QTcpSocket *socket, ServedController &controller, const ClientLimits &limits,
                     QObject *parent);

signals:
    /// The client is gone or was sent away.
    void finished();

private:
    void read();
    void work();
    void execute(const QByteArray &line);
    void answer(const WireProtocol::Answer &answer);
    void answerAtLast();
    void watchTheClock();
    void sendAway(const QString &reason);

    QTcpSocket *m_socket;
    ServedController &m_controller;
    const ClientLimits m_limits;
    ControllerClient m_client;
    LineCutter m_lines;
    WireProtocol::Answer m_heldAnswer;
    QTimer m_answerTimer; // runs while an answer is held back
    QTimer m_idleTimer;
    QTimer m_unfinishedLineTimer;
    bool m_isSentAway = false;
};
