#pragma once

#include "bench/freechannel.h"

#include <thread>

/// The cheapest channel that leaves its caller: each command goes through a local socket to another
/// thread, and an answer as long as the command comes back.
class SocketChannel : public FreeChannel
{
public:
    SocketChannel();
    ~SocketChannel() override;
    SocketChannel(const SocketChannel &) = delete;
    SocketChannel &operator=(const SocketChannel &) = delete;

private:
    void carry(const char *line) override;

    std::array<int, 2> m_sockets{}; ///< the caller's end and the other thread's
    std::thread m_farEnd;
};
