// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QTimer>

class EventLocation;

/**
 * Lets the current and the next event of the shown location follow the clock between two
 * refreshes: announces the location's events anew whenever one of them starts or ends. GUI thread.
 */
class EventBoundaryTimer : public QObject
{
    Q_OBJECT

public:
    explicit EventBoundaryTimer(QObject *parent = nullptr);

public Q_SLOTS:
    /** Follows @p location from now on, null for none; it may be deleted at any time. */
    void watch(EventLocation *location);

private:
    void arm(const QDateTime &now);
    void onTimeout();

    QTimer m_timer;
    QPointer<EventLocation> m_location;
    QDateTime m_boundary; ///< next start or end; invalid when none is left
    QDateTime m_lastLook; ///< a moment before it means that the clock was set back
};
