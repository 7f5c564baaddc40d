// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/headlimit.h"

#include <QDebug>
#include <QNetworkReply>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <linux/tcp.h>
#include <map>
#include <netinet/in.h>
#include <optional>
#include <sys/socket.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr qint64 maxHeadBytes = 64 * 1024;
/** Leaves room for bytes of bodies that Qt has received but not yet reported. */
constexpr qint64 maxStrayBytes = 1024 * 1024;
constexpr auto lookInterval = 100ms;
constexpr int maxDescriptors = 1024; // the usual limit of a process

/** Bytes of all bodies so far. Global because any thread may see the bytes of any connection. */
std::atomic<qint64> s_bodyBytes { 0 };

using BytesPerSocket = std::map<int, qint64>;

std::optional<qint64> bytesReceived(int socket)
{
    tcp_info info {};
    socklen_t size = sizeof(info);
    if (getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &size) != 0)
        return {}; // no TCP connection
    return static_cast<qint64>(info.tcpi_bytes_received);
}

BytesPerSocket connections()
{
    BytesPerSocket all;
    for (int socket = STDERR_FILENO + 1; socket < maxDescriptors; ++socket) {
        if (const auto bytes = bytesReceived(socket))
            all.emplace(socket, *bytes);
    }
    return all;
}

/** Closes the connection if the descriptor still is the one that has received @p bytes. */
void shutDown(int socket, qint64 bytes)
{
    const int own = dup(socket); // another thread can close the descriptor at any time
    if (own < 0)
        return;
    if (bytesReceived(own).value_or(0) >= bytes)
        shutdown(own, SHUT_RDWR);
    close(own);
}

/** Watches one reply until its head has arrived, and counts its body. Lives in its thread. */
class HeadLimit : public QObject
{
    Q_OBJECT

public:
    explicit HeadLimit(QNetworkReply *reply)
        : QObject(reply)
        , m_reply(reply)
    {
        auto *timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this, &HeadLimit::look);
        connect(reply, &QNetworkReply::finished, timer, &QTimer::stop);
        connect(reply, &QNetworkReply::metaDataChanged, timer, &QTimer::stop);
        connect(reply, &QNetworkReply::metaDataChanged, this, &HeadLimit::checkHead);
        connect(reply, &QNetworkReply::downloadProgress, this, &HeadLimit::countBody);
        connect(reply, &QNetworkReply::readyRead, this, [this] {
            countBody(m_reply->bytesAvailable()); // progress signals are throttled
        });
        timer->start(lookInterval);
    }

private:
    void look()
    {
        const BytesPerSocket now = connections();
        if (!m_before) {
            m_before = now;
            m_bodiesBefore = s_bodyBytes;
            return;
        }
        qint64 received = 0;
        auto busiest = std::make_pair(-1, qint64(0));
        for (const auto &[socket, bytes] : now) {
            const auto old = m_before->find(socket);
            // A smaller count is that of a new connection.
            const qint64 more
                = old != m_before->end() && old->second <= bytes ? bytes - old->second : bytes;
            received += more;
            if (more > busiest.second)
                busiest = { socket, more };
        }
        if (received - (s_bodyBytes - m_bodiesBefore) <= maxStrayBytes)
            return;
        shutDown(busiest.first, busiest.second);
        giveUp();
    }

    void checkHead()
    {
        const auto headers = m_reply->rawHeaderPairs();
        qint64 size = 0;
        for (const auto &[name, value] : headers)
            size += name.size() + value.size();
        if (size > maxHeadBytes)
            giveUp();
    }

    void giveUp()
    {
        if (m_reply->isFinished())
            return;
        qWarning() << "Giving up request for" << m_reply->url() << "since its head is too large";
        m_reply->abort();
    }

    void countBody(qint64 bytes)
    {
        s_bodyBytes += std::max<qint64>(0, bytes - m_bodyBytes);
        m_bodyBytes = std::max(m_bodyBytes, bytes);
    }

    QNetworkReply *m_reply;
    std::optional<BytesPerSocket> m_before;
    qint64 m_bodiesBefore = 0;
    qint64 m_bodyBytes = 0;
};

} // namespace

void limitHead(QNetworkReply *reply)
{
    new HeadLimit(reply); // owned by the reply
}

#include "headlimit.moc"
