// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

/**
 * Accepts POST requests on this machine, records their times of arrival and responds like the
 * attendance service. Runs in its own thread and uses little processor time, because it shares the
 * processors with the measured programs.
 */
class PostServer
{
public:
    using Clock = std::chrono::steady_clock;

    /** When TCP acknowledges received bytes; some senders wait for the acknowledgement. */
    enum class Acknowledges { AsUsual, AtOnce };

    struct Arrival
    {
        Clock::time_point head; ///< its first byte
        Clock::time_point whole; ///< the last byte of its body
    };

    /** The kiosk shows the response for @p noticeMs. Throws std::runtime_error. */
    explicit PostServer(Acknowledges acknowledges, int noticeMs = 1);
    PostServer(const PostServer &) = delete;
    PostServer &operator=(const PostServer &) = delete;
    ~PostServer();

    [[nodiscard]] QByteArray url() const;
    /** Number of POST requests. */
    [[nodiscard]] int count() const { return m_count; }
    [[nodiscard]] Arrival lastArrival() const;

private:
    struct Connection;

    void run();
    [[nodiscard]] bool serve(Connection &connection);

    const bool m_acknowledgesAtOnce;
    QByteArray m_response;
    int m_listener = -1;
    int m_port = 0;
    std::atomic<bool> m_isEnding = false;
    std::atomic<int> m_count = 0;
    mutable std::mutex m_mutex; ///< protects m_lastArrival
    Arrival m_lastArrival;
    std::thread m_thread;
};
