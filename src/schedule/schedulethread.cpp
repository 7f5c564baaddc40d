// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/schedulethread.h"

#include "base/exceptions.h"
#include "schedule/event.h"
#include "schedule/eventaudience.h"
#include "schedule/eventlocation.h"
#include "schedule/schedulereader.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

template <typename Function> void forEachObject(const ScheduleObjects &objects, Function function)
{
    std::for_each(objects.locations.cbegin(), objects.locations.cend(), function);
    std::for_each(objects.events.cbegin(), objects.events.cend(), function);
    std::for_each(objects.audiences.cbegin(), objects.audiences.cend(), function);
}

void deleteObjects(ScheduleObjects &objects)
{
    forEachObject(objects, [](QObject *object) { delete object; });
    objects = {};
}

} // namespace

ReadSchedule readSchedule(const QByteArray &document, const std::function<bool()> &mustStop)
{
    ReadSchedule schedule;
    try {
        try {
            ScheduleReader(document, schedule.objects, mustStop).read();
        } catch (const Exception &e) {
            schedule.failure = QString::fromUtf8(e.what());
            schedule.shownFailure = e.shown();
        }
        schedule.index = ScheduleIndex(schedule.objects);
        for (Event *event : qAsConst(schedule.objects.events))
            event->linkAudiences(schedule.index);
    } catch (const std::exception &e) {
        // Out of memory, for example. The receivers still wait for an end.
        schedule.failure = QString::fromUtf8(e.what());
    }
    return schedule;
}

ScheduleThread::ScheduleThread(const QByteArray &document)
    : m_document(document)
{
    setObjectName(QStringLiteral("schedule"));
}

ScheduleThread::~ScheduleThread()
{
    deleteObjects(m_schedule.objects);
}

ReadSchedule ScheduleThread::takeSchedule()
{
    return std::exchange(m_schedule, {});
}

void ScheduleThread::run()
{
    const QDeadlineTimer deadline(30s);
    m_schedule = readSchedule(std::exchange(m_document, {}), [this, &deadline] {
        return deadline.hasExpired() || isInterruptionRequested();
    });
    if (isInterruptionRequested())
        deleteObjects(m_schedule.objects);
    // One by one: the other thread waits while an object moves with its children.
    forEachObject(m_schedule.objects, [this](QObject *object) { object->moveToThread(thread()); });
}
