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
 * HTTP in threads of its own. Adds to the library's server that all requests go to
 * one handler, that stop() waits for nobody but the handler, and that the handler can look at the
 * connection of its request.
 */
class HttpServer : public httplib::Server
{
public:
    /// @param handler called in the worker threads, several at a time
    explicit HttpServer(const Handler &handler);
    Q_DISABLE_COPY_MOVE(HttpServer)
    ~HttpServer() override;

    /// Listens on the port, on a free one if it is 0, and is ready on return. To be called once.
    [[nodiscard]] bool start(const char *address, quint16 port);
    [[nodiscard]] quint16 port() const { return m_port; }
    /// Ends all connections and threads. A handler that waits must have been released before.
    void stop();

    /// The connection of the request that the calling worker thread handles at the moment.
    [[nodiscard]] static const Connection &currentConnection();

private:
    bool process_and_close_socket(socket_t socket) override;

    const int m_stopEvent;
    quint16 m_port = 0;
    std::thread m_thread;
};

} // namespace simulator
