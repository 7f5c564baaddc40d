// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/connection.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace simulator {

using namespace std::chrono_literals;

namespace {

    constexpr auto ioTimeout = 30s;
    constexpr size_t bufferSize = 16'384;

} // namespace

Connection::Connection(int socket, int stopEvent)
    : m_socket(socket)
    , m_stopEvent(stopEvent)
{
    // Otherwise the body of a response on a kept connection waits for a delayed acknowledgement.
    const int on = 1;
    ::setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    ::fcntl(m_socket, F_SETFD, FD_CLOEXEC); // the kiosk that we start must not inherit it
}

Connection::~Connection()
{
    ::close(m_socket);
}

bool Connection::waitForRequest(std::chrono::milliseconds timeout)
{
    return m_position < m_buffer.size() || waitFor(POLLIN, timeout);
}

bool Connection::peerHasGone() const
{
    pollfd entry { m_socket, POLLRDHUP, 0 };
    return ::poll(&entry, 1, 0) > 0;
}

void Connection::abort() const
{
    ::shutdown(m_socket, SHUT_RDWR);
}

bool Connection::is_readable() const
{
    return waitFor(POLLIN, ioTimeout);
}

bool Connection::is_writable() const
{
    return waitFor(POLLOUT, ioTimeout);
}

ssize_t Connection::read(char *data, size_t size)
{
    if (m_position == m_buffer.size()) {
        if (!is_readable())
            return -1;
        m_buffer.resize(bufferSize);
        const ssize_t received = ::recv(m_socket, m_buffer.data(), m_buffer.size(), 0);
        m_buffer.resize(received > 0 ? static_cast<size_t>(received) : 0);
        m_position = 0;
        if (received <= 0)
            return received;
    }
    const size_t count = std::min(size, m_buffer.size() - m_position);
    std::copy_n(m_buffer.data() + m_position, count, data);
    m_position += count;
    return static_cast<ssize_t>(count);
}

ssize_t Connection::write(const char *data, size_t size)
{
    return is_writable() ? ::send(m_socket, data, size, MSG_NOSIGNAL | MSG_DONTWAIT) : -1;
}

void Connection::get_remote_ip_and_port(std::string &ip, int &port) const
{
    get_local_ip_and_port(ip, port);
}

void Connection::get_local_ip_and_port(std::string &ip, int &port) const
{
    // Both ends are on this machine, and no handler reads the ports.
    ip = "127.0.0.1";
    port = 0;
}

bool Connection::waitFor(short events, std::chrono::milliseconds timeout) const
{
    std::array<pollfd, 2> entries { { { m_socket, events, 0 }, { m_stopEvent, POLLIN, 0 } } };
    if (::poll(entries.data(), entries.size(), static_cast<int>(timeout.count())) <= 0)
        return false;
    const bool stopping = entries[1].revents != 0;
    return entries[0].revents != 0 && (events == POLLOUT || !stopping);
}

} // namespace simulator
