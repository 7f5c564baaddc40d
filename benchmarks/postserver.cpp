// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "postserver.h"

#include <arpa/inet.h>
#include <array>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace {

QByteArray responseFor(int noticeMs)
{
    const QByteArray body
        = R"(<?xml version="1.0" encoding="UTF-8"?><attendanceResponse>)"
          "<serverTime>2026-11-23T10:00:00</serverTime><clientTime>2026-11-23T10:00:00</clientTime>"
          "<name>Erika Beispiel</name><notificationType>INFO</notificationType>"
          "<title>Erika Beispiel</title><message>Ihre Anwesenheit wurde erfasst.</message>"
          "<timeout>"
        + QByteArray::number(noticeMs) + "</timeout></attendanceResponse>";
    return "HTTP/1.1 200 OK\r\nContent-Type: application/xml; charset=utf-8\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

void setOption(int socket, int option)
{
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, option, &on, sizeof on); // a failure only slows it down
}

/** Length of the request at the start of @p bytes, 0 while its head is incomplete. */
int requestLength(const QByteArray &bytes)
{
    static const QByteArray field = "content-length:";
    const int headEnd = bytes.indexOf("\r\n\r\n");
    if (headEnd < 0)
        return 0;
    const QByteArray head = bytes.left(headEnd).toLower();
    const int start = head.indexOf(field) + field.size();
    const int end = head.indexOf('\r', start);
    return headEnd + 4 + head.mid(start, end < 0 ? -1 : end - start).trimmed().toInt();
}

} // namespace

struct PostServer::Connection
{
    int socket;
    QByteArray bytes;
    Arrival arrival;
};

PostServer::PostServer(Acknowledges acknowledges, int noticeMs)
    : m_acknowledgesAtOnce(acknowledges == Acknowledges::AtOnce)
    , m_response(responseFor(noticeMs))
    , m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    constexpr int backlog = 16;

    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    if (m_listener < 0 || ::bind(m_listener, generic, size) != 0
        || ::listen(m_listener, backlog) != 0 || ::getsockname(m_listener, generic, &size) != 0)
        throw std::runtime_error("the server of the benchmark does not start");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread(&PostServer::run, this);
}

PostServer::~PostServer()
{
    m_isEnding = true;
    ::shutdown(m_listener, SHUT_RDWR); // wakes the thread
    m_thread.join();
    ::close(m_listener);
}

QByteArray PostServer::url() const
{
    return "http://127.0.0.1:" + QByteArray::number(m_port) + "/attendancelog";
}

PostServer::Arrival PostServer::lastArrival() const
{
    const std::lock_guard lock(m_mutex);
    return m_lastArrival;
}

void PostServer::run()
{
    std::vector<Connection> connections;
    std::vector<pollfd> watched;
    while (!m_isEnding) {
        watched.assign(1, { m_listener, POLLIN, 0 });
        for (const Connection &connection : connections)
            watched.push_back({ connection.socket, POLLIN, 0 });
        ::poll(watched.data(), watched.size(), -1);
        for (size_t i = watched.size() - 1; i > 0; --i) {
            if (watched[i].revents == 0 || serve(connections[i - 1]))
                continue;
            ::close(connections[i - 1].socket);
            connections.erase(connections.begin() + static_cast<std::ptrdiff_t>(i) - 1);
        }
        if (watched[0].revents == 0)
            continue;
        const int socket = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0)
            continue;
        setOption(socket, TCP_NODELAY);
        connections.push_back({ socket, {}, {} });
    }
    for (const Connection &connection : connections)
        ::close(connection.socket);
}

/** Reads bytes and responds once a request is complete. False if the connection has ended. */
bool PostServer::serve(Connection &connection)
{
    std::array<char, 4096> buffer {};
    const ssize_t size = ::recv(connection.socket, buffer.data(), buffer.size(), 0);
    const auto now = Clock::now();
    if (size <= 0)
        return false;
    if (m_acknowledgesAtOnce)
        setOption(connection.socket, TCP_QUICKACK); // holds for these bytes only
    if (connection.bytes.isEmpty())
        connection.arrival.head = now;
    connection.bytes.append(buffer.data(), static_cast<int>(size));
    const int length = requestLength(connection.bytes);
    if (length == 0 || connection.bytes.size() < length)
        return true;
    connection.bytes.remove(0, length);
    connection.arrival.whole = now;
    {
        const std::lock_guard lock(m_mutex);
        m_lastArrival = connection.arrival;
    }
    ++m_count;
    return ::send(connection.socket, m_response.constData(), static_cast<size_t>(m_response.size()),
                  MSG_NOSIGNAL)
        == m_response.size();
}
