// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/eventboundarytimer.h"
#include "schedule/scheduledocument.h"
#include "support/testcase.h"

class TestEventLocation : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void knowsCurrentAndNextEvent_data()
    {
        columns<QTime, QString, QString, QTime>("now", "current", "next", "boundary");
        row("before", QTime(9, 59), "", "long", QTime(10, 0));
        row("at the start", QTime(10, 0), "long", "short", QTime(11, 0));
        row("in the overlap", QTime(11, 15), "long", "Zebra", QTime(11, 30, 0, 1));
        row("at the end", QTime(12, 0), "long", "Zulu", QTime(12, 0, 0, 1));
        row("just after the end", QTime(12, 0, 0, 1), "Zebra", "Zulu", QTime(13, 0, 0, 1));
        row("equal times by title", QTime(14, 0), "Zulu", "", QTime(15, 0, 0, 1));
        row("late", QTime(15, 0, 0, 1), "", "", QTime());
    }

    void knowsCurrentAndNextEvent()
    {
        const auto on = [](const QByteArray &start, const QByteArray &end, const char *title) {
            return eventXml("2024-05-13T" + start, "2024-05-13T" + end, title);
        };
        const auto data = readSchedule(
            scheduleXml(on("14:00", "15:00", "a") + on("12:00", "13:00", "Zebra")
                        + on("11:00", "11:30", "short") + on("14:00", "15:00", "Zulu")
                        + on("10:00", "12:00", "long")));
        const EventLocation *location = data->location(3);
        const QDateTime now(QDate(2024, 5, 13), at<QTime>("now"));
        const auto title = [](const Event *event) { return event ? event->title() : QString(); };
        QTEST(title(location->currentEvent(now)), "current");
        QTEST(title(location->nextEvent(now)), "next");
        QTEST(location->nextBoundary(now).time(), "boundary");
    }

    void followsTheClock()
    {
        auto data = readSchedule(scheduleXml());
        QDateTime now(QDate(2024, 5, 13), QTime(9, 0));
        const QSignalSpy changes(data->location(3), &EventLocation::eventsChanged);
        EventBoundaryTimer boundary;
        boundary.setClock([&now] { return now; });
        boundary.watch(data->location(3));
        auto *timer = boundary.findChild<QTimer *>();
        QCOMPARE(timer->interval(), 3600000);
        const auto wakeUp = [&](const QTime &time) {
            now.setTime(time);
            QMetaObject::invokeMethod(timer, "timeout");
            return "%1 changes, next in %2"_s.arg(changes.count())
                .arg(timer->isActive() ? timer->interval() : -1);
        };
        QCOMPARE(wakeUp(QTime(9, 59, 59, 500)), "0 changes, next in 500"_s);
        QCOMPARE(wakeUp(QTime(10, 0)), "1 changes, next in 7200001"_s);
        QCOMPARE(wakeUp(QTime(12, 0)), "1 changes, next in 1"_s);
        QCOMPARE(wakeUp(QTime(12, 0, 0, 1)), "2 changes, next in -1"_s);
        QCOMPARE(wakeUp(QTime(9, 0)), "3 changes, next in 3600000"_s); // the clock was set back
        data.reset();
        QCOMPARE(wakeUp(QTime(10, 0)), "3 changes, next in -1"_s);
    }
};

static const RegisterTest<TestEventLocation> registered;

#include "tst_eventlocation.moc"
