// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/eventboundarytimer.h"

#include "schedule/eventlocation.h"

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

/** A schedule may name any year, but a timer does not run for longer than 24 days. */
constexpr std::chrono::milliseconds maxWait = 24h;

} // namespace

EventBoundaryTimer::EventBoundaryTimer(QObject *parent)
    : QObject(parent)
    , m_clock([] { return QDateTime::currentDateTime(); })
    , m_timer(this)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &EventBoundaryTimer::lookAtClock);
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
    m_boundary = m_location ? m_location->nextBoundary(now) : QDateTime();
    if (!m_boundary.isValid())
        return;
    const auto wait = std::clamp<qint64>(now.msecsTo(m_boundary), 1, maxWait.count());
    m_timer.start(static_cast<int>(wait));
}

void EventBoundaryTimer::lookAtClock()
{
    const QDateTime now = m_clock();
    const bool passed = m_boundary.isValid() && now >= m_boundary;
    const bool clockWentBack = now < m_lastTime;
    if (m_location && (passed || clockWentBack))
        Q_EMIT m_location->eventsChanged();
    arm(now);
}
