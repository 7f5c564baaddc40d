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
        settings::set("refreshInterval"_s, 30);
        const QDateTime today(QDate::currentDate(), QTime(10, 5));
        ScheduleAge age;
        const QSignalSpy changes(&age, &ScheduleAge::asOfChanged);
        auto *expiry = age.findChild<QTimer *>("scheduleExpiry"_s);
        age.noteFailedRead();
        QVERIFY(!expiry->isActive());
        age.noteGoodRead(today);
        QVERIFY(expiry->isActive());
        QVERIFY(expiry->interval() >= 60000 && expiry->interval() < 90000);
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

        const QDateTime yesterday = today.addDays(-1);
        age.noteGoodRead(yesterday);
        QMetaObject::invokeMethod(expiry, "timeout");
        QCOMPARE(age.asOf(), "As of %1, 10:05"_s.arg(yesterday.toString("dd.MM.yy"_s)));
    }
};

static const RegisterTest<TestScheduleAge> registered;

#include "tst_scheduleage.moc"
