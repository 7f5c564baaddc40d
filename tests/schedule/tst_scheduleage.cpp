// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/scheduleage.h"
#include "support/testcase.h"

class TestScheduleAge : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void speaksUpWhenTheScheduleIsOld()
    {
        const int interval = 30;
        settings::set("refreshInterval"_s, interval);
        const QDateTime today(QDate::currentDate(), QTime(10, 5));
        const QDateTime yesterday = today.addDays(-1);
        ScheduleAge age;
        const QSignalSpy changes(&age, &ScheduleAge::asOfChanged);
        auto *expiry = age.findChild<QTimer *>("scheduleExpiry"_s);
        age.noteFailedRead();
        QVERIFY(!expiry->isActive());
        age.noteGoodRead(today);
        QVERIFY(expiry->isActive());
        QVERIFY(expiry->interval() >= 2000 * interval);
        QVERIFY(expiry->interval() < 2000 * interval + 30000);
        age.noteFailedRead();
        QCOMPARE(age.asOf(), ""_s);
        QCOMPARE(changes.count(), 0);

        QMetaObject::invokeMethod(expiry, "timeout");
        QCOMPARE(age.asOf(), "As of 10:05"_s);
        age.noteFailedRead();
        QCOMPARE(changes.count(), 2);
        age.noteGoodRead(QDateTime::currentDateTime());
        QCOMPARE(age.asOf(), ""_s);
        QCOMPARE(changes.count(), 3);

        age.noteGoodRead(yesterday);
        QMetaObject::invokeMethod(expiry, "timeout");
        QCOMPARE(age.asOf(), "As of %1, 10:05"_s.arg(yesterday.toString("dd.MM.yy"_s)));
    }
};

static const RegisterTest<TestScheduleAge> registered;

#include "tst_scheduleage.moc"
