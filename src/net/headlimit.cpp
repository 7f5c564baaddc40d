// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/headlimit.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QNetworkReply>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <linux/tcp.h>
#include <map>
#include <netinet/in.h>
#include <optional>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr qint64 maxHeadBytes = 64 * 1024;
constexpr qint64 maxUnfinishedBytes = 1024 * 1024;
constexpr auto lookInterval = 500ms;
/** Qt may have received a head that a busy thread has not heard of yet. */
constexpr auto patience = 2000ms;
constexpr int maxDescriptors = 1024; // the usual limit of a process

/** Replies whose bodies arrive. Global because all threads see the bytes of all connections. */
std::atomic<int> s_bodies { 0 };
/** Number of bodies that have begun so far. */
std::atomic<unsigned> s_begun { 0 };

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

/**
 * Watches one reply until its head has arrived. Looks only at times in which no body arrives, so
 * that all bytes belong to heads. Lives in the reply's thread.
 */
class HeadLimit : public QObject
{
    Q_OBJECT

public:
    explicit HeadLimit(QNetworkReply *reply)
        : QObject(reply)
        , m_reply(reply)
        , m_timer(this)
    {
        connect(&m_timer, &QTimer::timeout, this, &HeadLimit::look);
        connect(reply, &QNetworkReply::metaDataChanged, this, &HeadLimit::onHead);
        connect(reply, &QNetworkReply::finished, this, &HeadLimit::onFinished);
        m_timer.start(lookInterval);
    }
    Q_DISABLE_COPY_MOVE(HeadLimit)
    ~HeadLimit() override { onFinished(); }

private:
    void look()
    {
        const BytesPerSocket now = connections();
        const unsigned begun = s_begun;
        if (s_bodies > 0 || begun != m_begun || !m_start.isValid()) {
            m_before = now;
            m_begun = begun;
            m_start.start();
            return;
        }
        qint64 received = 0;
        auto busiest = std::make_pair(-1, qint64(0));
        for (const auto &[socket, bytes] : now) {
            const auto old = m_before.find(socket);
            // A smaller count is that of a new connection.
            const qint64 more
                = old != m_before.end() && old->second <= bytes ? bytes - old->second : bytes;
            received += more;
            if (more > busiest.second)
                busiest = { socket, more };
        }
        if (received <= maxUnfinishedBytes || !m_start.hasExpired(patience.count()))
            return;
        shutDown(busiest.first, busiest.second);
        giveUp();
    }

    void onHead()
    {
        if (m_isReceiving)
            return;
        m_isReceiving = true;
        ++s_bodies;
        ++s_begun;
        m_timer.stop();
        const auto headers = m_reply->rawHeaderPairs();
        qint64 size = 0;
        for (const auto &[name, value] : headers)
            size += name.size() + value.size();
        if (size > maxHeadBytes)
            giveUp();
    }

    void onFinished()
    {
        m_timer.stop();
        if (std::exchange(m_isReceiving, false))
            --s_bodies;
    }

    void giveUp()
    {
        if (m_reply->isFinished())
            return;
        qWarning() << "Giving up request for" << m_reply->url() << "since its head is too large";
        m_reply->abort();
    }

    QNetworkReply *m_reply;
    QTimer m_timer;
    BytesPerSocket m_before;
    QElapsedTimer m_start; ///< of the time without bodies
    unsigned m_begun = 0;
    bool m_isReceiving = false;
};

} // namespace

void limitHead(QNetworkReply *reply)
{
    new HeadLimit(reply); // owned by the reply
}

#include "headlimit.moc"
