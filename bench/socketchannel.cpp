#include "bench/socketchannel.h"

#include <QtGlobal>

#include <cstring>

#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr std::size_t longestLine = 512;

void echo(int socket)
{
    std::array<char, longestLine> line{};
    ssize_t length = 0;
    while ((length = recv(socket, line.data(), line.size(), 0)) > 0) {
        if (send(socket, line.data(), static_cast<std::size_t>(length), 0) != length) {
            qFatal("the answer did not get through");
        }
    }
}

} // namespace

SocketChannel::SocketChannel()
{
    if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, m_sockets.data()) != 0) {
        qFatal("there are no sockets");
    }
    m_farEnd = std::thread(echo, m_sockets.back());
}

SocketChannel::~SocketChannel()
{
    shutdown(m_sockets.front(), SHUT_RDWR);
    m_farEnd.join();
    close(m_sockets.front());
    close(m_sockets.back());
}

void SocketChannel::carry(const char *line)
{
    const std::size_t length = std::strlen(line);
    std::array<char, longestLine> answer{};
    if (send(m_sockets.front(), line, length, 0) != static_cast<ssize_t>(length)
        || recv(m_sockets.front(), answer.data(), answer.size(), 0) <= 0) {
        qFatal("the command did not get through");
    }
}
