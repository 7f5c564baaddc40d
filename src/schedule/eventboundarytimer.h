// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

class EventLocation;

/**
 * Keeps the current and the next event of the shown location up to date between two refreshes:
 * emits the location's eventsChanged() whenever one of its events starts or ends. The timer runs on
 * the monotonic clock, so somebody must call lookAtClock() now and then. GUI thread.
 */
class EventBoundaryTimer : public QObject
{
    Q_OBJECT

public:
    /** Returns the current local time. */
    using Clock = std::function<QDateTime()>;

    explicit EventBoundaryTimer(QObject *parent = nullptr);

    /** Replaces the system's clock. */
    void setClock(Clock clock);

public Q_SLOTS:
    /** Watches @p location, or nothing if it is null; it may be deleted at any time. */
    void watch(EventLocation *location);
    /** Takes the time anew. Call it when the clock may have been set. */
    void lookAtClock();

private:
    void arm(const QDateTime &now);

    Clock m_clock;
    QTimer m_timer;
    QPointer<EventLocation> m_location;
    QDateTime m_boundary; ///< next start or end; invalid if none is left
    QDateTime m_lastTime; ///< last reading; an earlier time means that the clock was set back
};
