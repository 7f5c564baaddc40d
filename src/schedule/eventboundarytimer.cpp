// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/eventboundarytimer.h"

#include "schedule/eventlocation.h"

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

// Timers run on the monotonic clock. Read the wall clock once a minute, too: it may be set while
// the program runs, for example after a start without network.
constexpr std::chrono::milliseconds maxWait = 60s;

} // namespace

EventBoundaryTimer::EventBoundaryTimer(QObject *parent)
    : QObject(parent)
    , m_clock([] { return QDateTime::currentDateTime(); })
    , m_timer(this)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &EventBoundaryTimer::onTimeout);
}

void EventBoundaryTimer::setClock(Clock clock)
{
    m_clock = std::move(clock);
}

void EventBoundaryTimer::watch(EventLocation *location)
{
    m_location = location;
    arm(m_clock());
}

void EventBoundaryTimer::arm(const QDateTime &now)
{
    m_timer.stop();
    m_lastTime = now;
    if (!m_location || m_location->events().isEmpty())
        return;
    m_boundary = m_location->nextBoundary(now);
    const qint64 wait = m_boundary.isValid()
        ? std::clamp<qint64>(now.msecsTo(m_boundary), 1, maxWait.count())
        : maxWait.count();
    m_timer.start(static_cast<int>(wait));
}

void EventBoundaryTimer::onTimeout()
{
    const QDateTime now = m_clock();
    const bool passed = m_boundary.isValid() && now >= m_boundary;
    const bool clockWentBack = now < m_lastTime;
    if (m_location && (passed || clockWentBack))
        Q_EMIT m_location->eventsChanged();
    arm(now);
}
