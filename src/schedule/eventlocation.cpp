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
    const auto started = startedBy(now);
    const auto it = std::find_if(m_events.cbegin(), started,
                                 [&now](const Event *event) { return event->end() >= now; });
    return it == started ? nullptr : *it;
}

Event *EventLocation::nextEvent() const
{
    return nextEvent(QDateTime::currentDateTime());
}

Event *EventLocation::nextEvent(const QDateTime &now) const
{
    const auto it = startedBy(now);
    return it == m_events.cend() ? nullptr : *it;
}

QDateTime EventLocation::nextBoundary(const QDateTime &now) const
{
    QDateTime end;
    std::for_each(m_events.cbegin(), startedBy(now), [&](const Event *event) {
        if (event->end() >= now && (!end.isValid() || event->end() < end))
            end = event->end();
    });
    // The end itself still belongs to the event.
    const QDateTime afterEnd = end.isValid() ? end.addMSecs(1) : end;
    const Event *next = nextEvent(now);
    if (!next)
        return afterEnd;
    return afterEnd.isValid() ? std::min(afterEnd, next->start()) : next->start();
}

QList<Event *>::const_iterator EventLocation::startedBy(const QDateTime &now) const
{
    return std::partition_point(m_events.cbegin(), m_events.cend(),
                                [&now](const Event *event) { return event->start() <= now; });
}

void EventLocation::updateRefs()
{
    const auto *data = qobject_cast<EventData *>(parent());
    Q_ASSERT(data);
    m_events = data->eventsOfLocation(m_id);
    Q_EMIT eventsChanged();
}
