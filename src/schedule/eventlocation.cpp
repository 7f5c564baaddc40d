// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/eventlocation.h"

#include "schedule/eventdata.h"

#include <algorithm>
#include <vector>

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

EventLocation::EventLocation(QObject *parent)
    : QObject(parent)
{
}

EventLocation::EventLocation(qint64 id, int displayOrder, const QString &shortName,
                             const QString &name, QObject *parent)
    : QObject(parent)
    , m_id(id)
    , m_displayOrder(displayOrder)
    , m_shortName(shortName)
    , m_name(name)
{
}

Event *EventLocation::currentEvent() const
{
    return currentEvent(QDateTime::currentDateTime());
}

Event *EventLocation::currentEvent(const QDateTime &now) const
{
    const auto it = std::find_if(m_events.cbegin(), m_events.cend(), [&now](const Event *event) {
        return event->start() <= now && event->end() >= now;
    });
    return it == m_events.cend() ? nullptr : *it;
}

Event *EventLocation::nextEvent() const
{
    return nextEvent(QDateTime::currentDateTime());
}

Event *EventLocation::nextEvent(const QDateTime &now) const
{
    const auto it = std::find_if(m_events.cbegin(), m_events.cend(),
                                 [&now](const Event *event) { return event->start() > now; });
    return it == m_events.cend() ? nullptr : *it;
}

QDateTime EventLocation::nextBoundary(const QDateTime &now) const
{
    QDateTime boundary;
    const auto consider = [&](const QDateTime &moment) {
        if (moment > now && (!boundary.isValid() || moment < boundary))
            boundary = moment;
    };
    for (const Event *event : m_events) {
        consider(event->start());
        // The end itself still belongs to the event.
        consider(event->end().addMSecs(1));
    }
    return boundary;
}

bool EventLocation::sortsBefore(const EventLocation *a, const EventLocation *b)
{
    if (a->m_displayOrder != b->m_displayOrder)
        return a->m_displayOrder < b->m_displayOrder;
    return a->m_name.toLower() < b->m_name.toLower();
}

void EventLocation::updateRefs()
{
    const auto *data = qobject_cast<EventData *>(parent());
    Q_ASSERT(data);
    m_events = data->eventsOfLocation(m_id);
    sortByTime(m_events);
    Q_EMIT eventsChanged();
}
