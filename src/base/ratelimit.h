// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <utility>

/**
 * Admits a few events per window of time and counts the rest. A window begins with the first event
 * after the last window. The caller passes the time, from a monotonic clock.
 */
class RateLimit
{
public:
    using Time = std::chrono::milliseconds;

    constexpr RateLimit(int maxEvents, Time window)
        : m_maxEvents(maxEvents)
        , m_window(window)
    {
    }

    /** True if there is room for an event at @p now; otherwise counts it. */
    [[nodiscard]] bool admits(Time now)
    {
        if (m_events == 0 || isOver(now)) {
            m_start = now;
            m_events = 0;
        }
        if (m_events >= m_maxEvents) {
            ++m_refused;
            return false;
        }
        ++m_events;
        return true;
    }

    /** True if the current window has ended at @p now. */
    [[nodiscard]] bool isOver(Time now) const { return now - m_start >= m_window; }

    [[nodiscard]] bool hasRefused() const { return m_refused > 0; }
    /** The number of refused events since the last call. */
    [[nodiscard]] unsigned long long takeRefused() { return std::exchange(m_refused, 0); }

private:
    int m_maxEvents;
    Time m_window;
    Time m_start {};
    int m_events = 0;
    unsigned long long m_refused = 0;
};
