// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/eventlocation.h"

#include "schedule/eventdata.h"

#include <algorithm>

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
    std::sort(m_events.begin(), m_events.end(), &Event::sortsBefore);
    Q_EMIT eventsChanged();
}
