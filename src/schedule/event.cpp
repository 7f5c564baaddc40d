// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/event.h"

#include "schedule/eventaudience.h"
#include "schedule/eventdata.h"
#include "schedule/eventlocation.h"
#include "schedule/scheduleindex.h"

#include <QLocale>

#include <functional>
#include <utility>

namespace {

/** The names as one text of bounded length, however many there are. */
QString joined(const QStringList &names)
{
    constexpr int maxLength = 10000;
    QString all;
    for (const QString &name : names) {
        if (!all.isEmpty())
            all += QLatin1String(", ");
        all += name;
        if (all.size() >= maxLength)
            break;
    }
    return all.left(maxLength);
}

} // namespace

Event::Event(QObject *parent)
    : QObject(parent)
{
}

Event::Event(EventFields fields, QList<EventEAudience *> audiences, QObject *parent)
    : QObject(parent)
    , m_fields(std::move(fields))
    , m_audiences(std::move(audiences))
{
    for (EventEAudience *link : qAsConst(m_audiences))
        link->setParent(this);
}

QString Event::startDateStr() const
{
    return QLocale().toString(m_fields.start.toLocalTime().date(), QLocale::LongFormat);
}

QString Event::startEndTimeStr() const
{
    // Show local time, whatever offset the service wrote.
    const auto shown = [](const QDateTime &moment) {
        return QLocale().toString(moment.toLocalTime().time(), QLocale::ShortFormat);
    };
    //: Two times. No-break spaces and a word joiner (U+2060) behind the dash keep them on one line.
    return tr("%1 - %2").arg(shown(m_fields.start), shown(m_fields.end));
}

QString Event::speakers() const
{
    return joined(m_fields.speakers);
}

void Event::linkAudiences(const ScheduleIndex &index)
{
    for (EventEAudience *link : qAsConst(m_audiences))
        link->setAudience(index.audience(link->audienceId()));
}

bool Event::sortsBefore(const Event *a, const Event *b)
{
    if (!a || !b)
        return std::less<const Event *>()(a, b);
    if (a->m_fields.start != b->m_fields.start)
        return a->m_fields.start < b->m_fields.start;
    if (a->m_fields.end != b->m_fields.end)
        return a->m_fields.end < b->m_fields.end;
    return a->m_fields.title < b->m_fields.title;
}

void Event::updateRefs()
{
    const auto *data = qobject_cast<EventData *>(parent());
    Q_ASSERT(data);
    m_location = data->location(m_fields.locationId);
    Q_EMIT locationChanged();
    Q_EMIT audiencesChanged();
}

QString Event::audienceNames(bool mandatory) const
{
    QStringList names;
    for (const EventEAudience *link : m_audiences) {
        if (link->isMandatory() != mandatory)
            continue;
        names.append(link->audience() ? link->audience()->name() : QStringLiteral("null"));
    }
    return joined(names);
}
