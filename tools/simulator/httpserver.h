// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

#include <functional>
#include <httplib.h>
#include <thread>

namespace simulator {

class Connection;

/**
 * An HTTP server with its own threads. Unlike the library's server it passes all requests to one
 * handler, waits in stop() for nothing but the handler, and gives the handler access to the
 * connection of its request.
 */
class HttpServer : public httplib::Server
{
public:
    /// @param handler called in several worker threads at once
    explicit HttpServer(const Handler &handler);
    Q_DISABLE_COPY_MOVE(HttpServer)
    ~HttpServer() override;

    /// Listens on the port, or on a free one if it is 0, and is ready on return. Call it once.
    [[nodiscard]] bool start(const char *address, quint16 port);
    [[nodiscard]] quint16 port() const { return m_port; }
    /// Ends all connections and threads. Release waiting handlers first.
    void stop();

    /// The connection of the request that the calling worker thread is handling.
    [[nodiscard]] static const Connection &currentConnection();

private:
    bool process_and_close_socket(socket_t socket) override;

    const int m_stopEvent;
    quint16 m_port = 0;
    std::thread m_thread;
};

} // namespace simulator
