// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/scheduleindex.h"

#include "schedule/event.h"
#include "schedule/eventaudience.h"
#include "schedule/eventlocation.h"
#include "schedule/scheduleobjects.h"

namespace {

/** Milliseconds that sort local times as QDateTime does, but compare much faster. */
qint64 wallClock(const QDateTime &local)
{
    constexpr qint64 dayMs = 24LL * 60 * 60 * 1000;
    return local.date().toJulianDay() * dayMs + local.time().msecsSinceStartOfDay();
}

/** Sorts like Event::sortsBefore(), but faster: every refresh sorts all events. */
void sortByTime(QList<Event *> &events)
{
    struct Keyed
    {
        qint64 start;
        qint64 end;
        Event *event;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(static_cast<size_t>(events.size()));
    for (Event *event : qAsConst(events)) {
        if (event->start().timeSpec() != Qt::LocalTime
            || event->end().timeSpec() != Qt::LocalTime) {
            std::sort(events.begin(), events.end(), &Event::sortsBefore); // times with an offset
            return;
        }
        keyed.push_back({ wallClock(event->start()), wallClock(event->end()), event });
    }
    std::sort(keyed.begin(), keyed.end(), [](const Keyed &a, const Keyed &b) {
        if (a.start != b.start)
            return a.start < b.start;
        return a.end != b.end ? a.end < b.end : Event::sortsBefore(a.event, b.event);
    });
    std::transform(keyed.cbegin(), keyed.cend(), events.begin(),
                   [](const Keyed &k) { return k.event; });
}

} // namespace

ScheduleIndex::ScheduleIndex(const ScheduleObjects &objects)
    : m_locations(objects.locations)
    , m_audiences(objects.audiences)
    , m_events(m_locations.size())
{
    for (Event *event : objects.events) {
        const size_t place = m_locations.position(event->locationId());
        if (place < m_events.size())
            m_events[place].append(event);
    }
    for (QList<Event *> &events : m_events)
        sortByTime(events);
}

QList<Event *> ScheduleIndex::eventsOfLocation(qint64 id) const
{
    const size_t place = m_locations.position(id);
    return place < m_events.size() ? m_events[place] : QList<Event *>();
}
