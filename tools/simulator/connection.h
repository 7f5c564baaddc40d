// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <httplib.h>
#include <vector>

namespace simulator {

/**
 * One accepted connection as the HTTP library reads and writes it, used by one worker thread.
 * Unlike the library's own stream it ends its waits as soon as the server stops: it then reads no
 * more and writes only what the other side takes at once.
 */
class Connection : public httplib::Stream
{
public:
    /// Takes the socket over and closes it in the end.
    /// @param stopEvent a descriptor that becomes readable, and stays so, when the server stops
    Connection(int socket, int stopEvent);
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;
    ~Connection() override;

    /// Waits for the first byte of a request; false at the end of the connection or of the time.
    [[nodiscard]] bool waitForRequest(std::chrono::milliseconds timeout);
    /// Whether the other side has closed the connection.
    [[nodiscard]] bool peerHasGone() const;
    /// Ends the connection now: nothing is read or written any more.
    void abort() const;

    [[nodiscard]] bool is_readable() const override;
    [[nodiscard]] bool is_writable() const override;
    ssize_t read(char *data, size_t size) override;
    ssize_t write(const char *data, size_t size) override;
    void get_remote_ip_and_port(std::string &ip, int &port) const override;
    void get_local_ip_and_port(std::string &ip, int &port) const override;
    [[nodiscard]] socket_t socket() const override { return m_socket; }

private:
    /// Waits until the socket is ready for the poll events or the time has passed.
    [[nodiscard]] bool waitFor(short events, std::chrono::milliseconds timeout) const;

    const int m_socket;
    const int m_stopEvent;
    std::vector<char> m_buffer; ///< what was received and not yet read, from m_position on
    size_t m_position = 0;
};

} // namespace simulator
