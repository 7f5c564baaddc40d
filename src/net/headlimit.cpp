// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/headlimit.h"

#include <QAbstractEventDispatcher>
#include <QDebug>
#include <QElapsedTimer>
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
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr qint64 maxHeadBytes = 64 * 1024;
constexpr qint64 maxStrayBytes = 1024 * 1024;
constexpr auto lookInterval = 500ms;
/** Bytes of a body count as stray until a busy thread reports them. */
constexpr auto patience = 5000ms;
/** Bodies of earlier windows must not hide a head. */
constexpr auto window = 10000ms;
/** Qt goes on reading after the request has ended. */
constexpr auto afterwatch = 15000ms;
constexpr int maxDescriptors = 1024; // the usual limit of a process

/** Bytes of all bodies so far. Global because all threads see the bytes of all connections. */
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

/**
 * Counts the body of one reply, and watches the connections until the reply ends; if bytes that
 * belong to no body still arrive then, for a while longer. Lives in the reply's thread and deletes
 * itself.
 */
class HeadLimit : public QObject
{
    Q_OBJECT

public:
    explicit HeadLimit(QNetworkReply *reply)
        : QObject(QAbstractEventDispatcher::instance())
        , m_reply(reply)
        , m_timer(this)
    {
        connect(&m_timer, &QTimer::timeout, this, &HeadLimit::look);
        connect(reply, &QNetworkReply::downloadProgress, this, &HeadLimit::countBody);
        connect(reply, &QNetworkReply::readyRead, this, [this] {
            countBody(m_reply->bytesAvailable()); // progress signals are throttled
        });
        connect(reply, &QNetworkReply::finished, this, &HeadLimit::onEnd);
        connect(reply, &QObject::destroyed, this, &HeadLimit::onEnd);
        m_timer.start(lookInterval);
    }

private:
    void look()
    {
        if (m_end.isValid() && m_end.hasExpired(afterwatch.count())) {
            deleteLater();
            return;
        }
        const BytesPerSocket now = connections();
        const qint64 bodies = s_bodyBytes - m_bodiesBefore;
        const auto [busiest, stray] = strayBytes(now, bodies);
        // Below the share of the bodies, the busiest connection could be one of theirs.
        const bool isExcess = m_window.isValid() && stray > std::max(maxStrayBytes, bodies);
        if (!isExcess) {
            m_excess.invalidate();
            if (!m_window.isValid() || m_window.hasExpired(window.count()))
                openWindow(now);
        } else if (!m_excess.isValid()) {
            m_excess.start();
        } else if (m_excess.hasExpired(patience.count())) {
            qWarning() << "Closing a connection since a head or a chunk size of its response does "
                          "not end.";
            shutDown(busiest, now.at(busiest));
            openWindow(now);
        }
    }

    void openWindow(const BytesPerSocket &now)
    {
        m_window.start();
        m_before = now;
        m_bodiesBefore = s_bodyBytes;
        m_excess.invalidate();
    }

    /** The busiest connection of the window, and the bytes of all that are not of @p bodies. */
    [[nodiscard]] std::pair<int, qint64> strayBytes(const BytesPerSocket &now, qint64 bodies) const
    {
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
        return { busiest.first, received - bodies };
    }

    void onEnd()
    {
        if (m_end.isValid())
            return;
        m_end.start();
        if (!m_window.isValid()
            || strayBytes(connections(), s_bodyBytes - m_bodiesBefore).second <= maxHeadBytes)
            deleteLater();
    }

    void countBody(qint64 bytes)
    {
        s_bodyBytes += std::max<qint64>(0, bytes - m_bodyBytes);
        m_bodyBytes = std::max(m_bodyBytes, bytes);
    }

    QNetworkReply *m_reply;
    QTimer m_timer;
    BytesPerSocket m_before;
    qint64 m_bodiesBefore = 0;
    qint64 m_bodyBytes = 0;
    QElapsedTimer m_window; ///< since m_before
    QElapsedTimer m_excess; ///< since there are too many stray bytes
    QElapsedTimer m_end; ///< since the reply has ended
};

} // namespace

void limitHead(QNetworkReply *reply)
{
    new HeadLimit(reply); // deletes itself
}

#include "headlimit.moc"
