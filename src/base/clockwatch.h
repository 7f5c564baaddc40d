// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "base/zonefile.h"

#include <QObject>
#include <QTimer>

/**
 * Tells once a minute that it is time to look at the clock: timers run on the monotonic clock and
 * notice neither a wall clock that was set nor a new time zone.
 *
 * It polls, because the kernel's notifications would need one watch for the clock, one for the
 * zone's link and one for its target, and miss a machine that slept. One wake-up a minute covers
 * them all. GUI thread.
 */
class ClockWatch : public QObject
{
    Q_OBJECT

public:
    explicit ClockWatch(QObject *parent = nullptr);

Q_SIGNALS:
    /** The clock may be a different one now; so is the zone if @p isZoneNew. */
    void mustLook(bool isZoneNew);

private:
    void onMinute();

    QTimer m_minute;
    ZoneFile m_zone;
};
