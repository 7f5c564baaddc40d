// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

/**
 * Takes POSTs on this machine, notes when each arrives and answers as the service for attendance
 * does. Costs as little as can be: what is measured shares the processors with it. Has a thread of
 * its own.
 */
class PostServer
{
public:
    using Clock = std::chrono::steady_clock;

    /** When the system tells a sender that its bytes have come; it affects who waits for that. */
    enum class Acknowledges { AsUsual, AtOnce };

    struct Arrival
    {
        Clock::time_point head; ///< its first byte
        Clock::time_point whole; ///< the last byte of its body
    };

    /** @p noticeMs is how long a notice with the answer shall stay. Throws std::runtime_error. */
    explicit PostServer(Acknowledges acknowledges, int noticeMs = 1);
    PostServer(const PostServer &) = delete;
    PostServer &operator=(const PostServer &) = delete;
    ~PostServer();

    [[nodiscard]] QByteArray url() const;
    /** How many POSTs have come. */
    [[nodiscard]] int count() const { return m_count; }
    [[nodiscard]] Arrival lastArrival() const;

private:
    struct Connection;

    void run();
    [[nodiscard]] bool serve(Connection &connection);

    const bool m_acknowledgesAtOnce;
    QByteArray m_answer;
    int m_listener = -1;
    int m_port = 0;
    std::atomic<bool> m_isEnding = false;
    std::atomic<int> m_count = 0;
    mutable std::mutex m_mutex; ///< guards the next one
    Arrival m_lastArrival;
    std::thread m_thread;
};
