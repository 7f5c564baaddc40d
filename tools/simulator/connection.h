// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <httplib.h>
#include <vector>

namespace simulator {

/**
 * One accepted connection, read and written by the HTTP library in one worker thread. Unlike the
 * library's own stream it stops waiting as soon as the server stops: it then reads nothing more and
 * writes only what the client accepts at once.
 */
class Connection : public httplib::Stream
{
public:
    /// Takes ownership of the socket.
    /// @param stopEvent a descriptor that becomes readable, and stays so, when the server stops
    Connection(int socket, int stopEvent);
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;
    ~Connection() override;

    /// Waits for the first byte of a request. False on time-out or at the end of the connection.
    [[nodiscard]] bool waitForRequest(std::chrono::milliseconds timeout);
    /// Whether the client has closed the connection.
    [[nodiscard]] bool peerHasGone() const;
    /// Ends the connection at once.
    void abort() const;

    [[nodiscard]] bool is_readable() const override;
    [[nodiscard]] bool is_writable() const override;
    ssize_t read(char *data, size_t size) override;
    ssize_t write(const char *data, size_t size) override;
    void get_remote_ip_and_port(std::string &ip, int &port) const override;
    void get_local_ip_and_port(std::string &ip, int &port) const override;
    [[nodiscard]] socket_t socket() const override { return m_socket; }

private:
    /// Waits until the socket is ready for the poll events. False on time-out.
    [[nodiscard]] bool waitFor(short events, std::chrono::milliseconds timeout) const;

    const int m_socket;
    const int m_stopEvent;
    std::vector<char> m_buffer; ///< received data, unread from m_position on
    size_t m_position = 0;
};

} // namespace simulator
