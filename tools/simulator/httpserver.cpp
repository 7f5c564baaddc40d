// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/httpserver.h"

#include "simulator/connection.h"

#include <future>
#include <sys/eventfd.h>
#include <unistd.h>

namespace simulator {

using namespace std::chrono_literals;

namespace {

    constexpr auto keepAliveTimeout = 30s;
    constexpr size_t keepAliveRequests = 1'000'000;
    constexpr size_t workerThreads = 32; // each open connection needs one

    // The library passes no connection to a handler. A thread serves one connection at a time.
    thread_local const Connection *s_connection = nullptr;

} // namespace

HttpServer::HttpServer(const Handler &handler)
    : m_stopEvent(::eventfd(0, EFD_CLOEXEC))
{
    constexpr auto everyPath = ".*";
    Get(everyPath, handler);
    Post(everyPath, handler);
    Put(everyPath, handler);
    Patch(everyPath, handler);
    Delete(everyPath, handler);
    Options(everyPath, handler);
    // Only announced to the client: process_and_close_socket() keeps the connection.
    set_keep_alive_timeout(keepAliveTimeout.count());
    set_keep_alive_max_count(keepAliveRequests);
    // By default a second simulator could share the port and take half of the requests.
    set_socket_options([](socket_t socket) {
        const int on = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    });
}

HttpServer::~HttpServer()
{
    stop();
    ::close(m_stopEvent);
}

bool HttpServer::start(const char *address, quint16 port)
{
    const int bound = port == 0       ? bind_to_any_port(address)
        : bind_to_port(address, port) ? port
                                      : -1;
    if (bound <= 0)
        return false;
    m_port = static_cast<quint16>(bound);

    // The library creates its workers once it listens. Wait for that: an earlier stop() would have
    // no effect.
    std::promise<void> listening;
    new_task_queue = [&listening] {
        auto *pool = new httplib::ThreadPool(workerThreads);
        listening.set_value();
        return pool;
    };
    m_thread = std::thread([this] { listen_after_bind(); });
    listening.get_future().wait();
    return true;
}

void HttpServer::stop()
{
    if (!m_thread.joinable())
        return;
    ::eventfd_write(m_stopEvent, 1);
    Server::stop();
    m_thread.join();
}

const Connection &HttpServer::currentConnection()
{
    Q_ASSERT(s_connection);
    return *s_connection;
}

bool HttpServer::process_and_close_socket(socket_t socket)
{
    Connection connection(socket, m_stopEvent);
    s_connection = &connection;
    bool good = true;
    bool closed = false;
    while (good && !closed && connection.waitForRequest(keepAliveTimeout))
        good = process_request(connection, !is_running(), closed, nullptr);
    s_connection = nullptr;
    return good;
}

} // namespace simulator
