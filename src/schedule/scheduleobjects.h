// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>

class Event;
class EventAudience;
class EventLocation;

/** The objects of one schedule: events in document order, the others sorted for display. */
struct ScheduleObjects
{
    QList<Event *> events;
    QList<EventLocation *> locations;
    QList<EventAudience *> audiences;
};
