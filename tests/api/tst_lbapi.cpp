// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "api/lbapi.h"
#include "schedule/scheduledocument.h"
#include "support/notices.h"
#include "support/testcase.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QThread>

using namespace simulator;

/** Holds every object that a view can reach, and creates a notification. */
static constexpr auto view = R"(
    import QtQml 2.15
    import Lumenboard 1.0
    QtObject {
        property var held: [LBAPI, LBAPI.config, LBAPI.eventData, LBAPI.config.plenarLocation]
        property Component notice: LBNotification { title: "From QML" }
        Component.onCompleted: LBAPI.addNotification(notice.createObject(null))
    }
)";

class TestLbapi : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void replacesScheduleByTheNextGoodOne()
    {
        services().setFault(Route::Schedule, Fault::Empty);
        log().expect("Error reading event data"_s);
        LBAPI *api = LBAPI::instance();
        const QSignalSpy changes(api, &LBAPI::eventDataChanged);
        const QPointer<EventData> failed = api->eventData();
        QVERIFY(isIdle());
        QVERIFY(failed && failed == api->eventData() && failed->error());

        services().clearFaults();
        auto *retry = api->findChild<QTimer *>("scheduleRetry"_s);
        QVERIFY(retry->isActive());
        QVERIFY(QMetaObject::invokeMethod(retry, "timeout"));
        QCOMPARE(api->eventData(), failed);
        QVERIFY(isIdle());
        const EventData *good = api->eventData();
        QVERIFY(failed.isNull() && !good->error());
        QCOMPARE(changes.value(0).value(0).value<EventData *>(), good);

        log().expect("this doesn't look like event data"_s);
        QVERIFY(refresh(Fault::WrongRoot));
        QCOMPARE(api->eventData(), good);
        QCOMPARE(changes.count(), 1);
        QVERIFY(!retry->isActive());
        delete good;
        QVERIFY(api->eventData());
    }

    void tellsTheAgeOfAnOldSchedule()
    {
        services();
        settings::set("refreshInterval"_s, 30);
        LBAPI *api = LBAPI::instance();
        const QSignalSpy changes(api, &LBAPI::scheduleAsOfChanged);
        auto *age = api->findChild<ScheduleAge *>();
        auto *expiry = api->findChild<QTimer *>("scheduleExpiry"_s);
        age->onReadFailed();
        QVERIFY(!expiry->isActive());
        QVERIFY(api->eventData() && isIdle());
        QVERIFY(expiry->isActive());
        QVERIFY(expiry->interval() >= 60000 && expiry->interval() < 90000);
        const QDateTime today(QDate::currentDate(), QTime(10, 5));
        age->onReadSucceeded(today);
        age->onReadFailed();
        QCOMPARE(api->scheduleAsOf(), ""_s);

        QMetaObject::invokeMethod(expiry, "timeout");
        QCOMPARE(api->scheduleAsOf(), "As of 10:05"_s);
        log().expect("Error reading event data"_s);
        QVERIFY(refresh(Fault::Empty));
        QVERIFY(refresh(Fault::None));
        QCOMPARE(api->scheduleAsOf(), ""_s);
        QCOMPARE(changes.count(), 3);

        age->onReadSucceeded(today.addDays(-1));
        QMetaObject::invokeMethod(expiry, "timeout");
        QCOMPARE(api->scheduleAsOf(),
                 "As of %1, 10:05"_s.arg(today.addDays(-1).toString("dd.MM.yy"_s)));
    }

    void endsTheDownloadUnderWay()
    {
        LBAPI *api = LBAPI::instance();
        services().setFault(Route::Schedule, Fault::Hang);
        const QPointer<EventData> first = api->eventData();
        const QSignalSpy changes(api, &LBAPI::eventDataChanged);
        for (int i = 0; i < 20; ++i)
            api->refreshEventData();
        QCOMPARE(api->findChildren<QNetworkAccessManager *>().size(), 1);
        QCOMPARE(changes.count(), 20); // nothing is shown yet: a failure must be
        QTRY_COMPARE(api->findChildren<EventData *>().size(), 1);
        QVERIFY(first.isNull() && refresh(Fault::None));

        const EventData *shown = api->eventData();
        api->refreshEventData();
        auto *late = api->findChildren<EventData *>().constLast();
        services().setFault(Route::Schedule, Fault::Hang);
        api->refreshEventData();
        Q_EMIT late->readEventDataFinished(late); // it is not deleted yet
        QCOMPARE(api->eventData(), shown);
        log().expect("this doesn't look like event data"_s);
        QVERIFY(refresh(Fault::WrongRoot));
        QCOMPARE(api->eventData(), shown);
    }

    void followsTheClockAtTheLocation_data()
    {
        columns<int>("idAtFirst");
        row("from the start", 3);
        row("of a new room", 4);
    }

    void followsTheClockAtTheLocation()
    {
        services().setSchedule(scheduleXml());
        settings::set("plenarLocationId"_s, at<int>("idAtFirst"));
        LBAPI *api = LBAPI::instance();
        QDateTime now(QDate(2024, 5, 13), QTime(9, 0));
        auto *boundary = api->findChild<EventBoundaryTimer *>();
        boundary->setClock([&now] { return now; });
        QVERIFY(api->eventData());
        QVERIFY(QSignalSpy(api->config(), &Config::locationChanged).wait());
        settings::set("plenarLocationId"_s, 3);
        if (at<int>("idAtFirst") != 3)
            Q_EMIT api->config()->configChanged();
        const QSignalSpy changes(api->config()->plenarLocation(), &EventLocation::eventsChanged);
        now = now.addSecs(3600);
        passMinute();
        QCOMPARE(changes.count(), 1);
    }

    void showsTheDayOfTheClock_data()
    {
        columns<Fault, int, Fault, int>("at first", "days", "then", "refreshes");
        row("same day", Fault::None, 0, Fault::None, 0);
        row("set back", Fault::None, -9, Fault::None, 1);
        row("loads the wrong day", Fault::Hang, 1, Fault::None, 1);
        row("loads the right day", Fault::None, 1, Fault::Hang, 1);
        row("fails", Fault::None, 1, Fault::Empty, 2);
        row("failed", Fault::Empty, 1, Fault::None, 1);
    }

    void showsTheDayOfTheClock()
    {
        const auto then = at<Fault>("then");
        const auto faults = { at<Fault>("at first"), then, then, then };
        QDate day(2024, 2, 28);
        log().allow("Error reading event data"_s);
        settings::set("overrideDate"_s, true);
        for (const Fault fault : faults) {
            services().setFault(Route::Schedule, fault);
            settings::set("overrideDateDate"_s, day);
            passMinute();
            QVERIFY(LBAPI::instance()->eventData() && (fault == Fault::Hang || isIdle()));
            day = QDate(2024, 2, 28).addDays(at<int>("days"));
        }
        QCOMPARE(log().lines().filter("fetching the schedule"_s).size(), at<int>("refreshes"));
        QCOMPARE(LBAPI::instance()->eventData()->day() == day, at<Fault>("then") == Fault::None);
    }

    void followsTheTimeZone_data()
    {
        columns<QString, QString, int, int>("TZ", "change", "hour", "refreshes");
        row("link replaced", ":%1", "ln -sf $PWD/America/New_York $0", 8, 3);
        row("file replaced", ":%1", "cp America/New_York $0.new; mv $0.new $0", 8, 3);
        row("missing", ":%1", "rm $0", 14, 1);
        row("named", "Europe/Berlin", "ln -sf $PWD/America/New_York $0", 14, 0);
    }

    void followsTheTimeZone()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("zone"_s);
        const auto hourAfter = [&file](const QString &change) {
            QProcess::execute("sh"_s, { "-c"_s, "cd /usr/share/zoneinfo; "_s + change, file });
            passMinute();
            return QDateTime({ 2024, 5, 13 }, { 12, 0 }, Qt::UTC).toLocalTime().time().hour();
        };
        const auto restore = qScopeGuard([] { qputenv("TZ", "Europe/Berlin"); });
        qputenv("TZ", at("TZ").replace("%1"_s, file).toUtf8());
        services();
        QVERIFY(LBAPI::instance()->eventData());
        const QString berlin = "ln -sf $PWD/Europe/Berlin $0"_s;
        QCOMPARE(hourAfter(berlin), 14);
        QCOMPARE(hourAfter(at("change")), at<int>("hour"));
        QCOMPARE(hourAfter(berlin), 14);
        QCOMPARE(log().lines().filter("fetching the schedule"_s).size(), at<int>("refreshes"));
        QVERIFY(isIdle());
    }

    void takesNotificationsOfTheCallingThread()
    {
        LBAPI *api = LBAPI::instance();
        const std::unique_ptr<QThread> worker(QThread::create([api] {
            QObject owner;
            auto *n = new Notification(0, "title"_s, {}, 60000, false, true, &owner);
            api->addNotification(n);
            n->setMessage("later"_s);
        }));
        worker->start();
        worker->wait();
        QCOMPARE(api->notifications()->length(), 0);
        QTRY_COMPARE(api->notifications()->length(), 1);
        const Notification *taken = notice();
        QCOMPARE(taken->message(), "later"_s);
        QCOMPARE(taken->thread(), api->thread());
        QCOMPARE(taken->parent(), api);
        QVERIFY(taken->remainingTime() > 0);
    }

    void keepsARemovedNotificationForASecond()
    {
        LBAPI *api = LBAPI::instance();
        const QAbstractItemModelTester tester(api->notifications());
        auto *n = new Notification;
        api->addNotification(n);
        api->addNotification(n);
        QMetaObject::invokeMethod(api, "removeNotification", Q_ARG(Notification *, n));
        QCOMPARE(api->notifications()->length(), 1);
        QSignalSpy destroyed(n, &QObject::destroyed);
        QElapsedTimer timer;
        timer.start();
        n->remove();
        n->remove();
        QCOMPARE(api->notifications()->length(), 0);
        QVERIFY(destroyed.wait());
        QVERIFY2(timer.elapsed() > 900, "the notice was still fading out");
    }

    void endsTheOldestLastingNoticesWithAReset()
    {
        QString ended;
        for (const QChar key : "olcb12345"_s) {
            const int type = key == QLatin1Char('l') ? Notification::LOADING : Notification::ERR;
            const uint timeout = key == QLatin1Char('c') ? 60000 : 0;
            auto *n = new Notification(type, key, {}, timeout, false, key != QLatin1Char('b'));
            connect(n, &Notification::removed, this, [&ended, key] { ended += key; });
            LBAPI::instance()->addNotification(n);
        }
        LBAPI::instance()->emitReset();
        QCOMPARE(ended, "o"_s);
    }

    void warnsWherePeopleHoldUpCards()
    {
        LBAPI *api = LBAPI::instance();
        api->cardReadiness()->onReaderStateChanged(false);
        settings::set("attendanceEnabled"_s, false);
        QVERIFY(!api->cardWarning().isEmpty());
        settings::set("tallyxMode"_s, 0);
        QVERIFY(api->cardWarning().isEmpty());
        const QSignalSpy changes(api, &LBAPI::cardWarningChanged);
        api->setScanTransponder(true);
        QVERIFY(!api->cardWarning().isEmpty() && changes.count() == 1);
    }

    void tellsThatNoRoomIsSet()
    {
        const LBAPI *api = LBAPI::instance();
        QVERIFY(api->roomWarning().isEmpty()); // the service may still name one
        QSignalSpy changes(api, &LBAPI::roomWarningChanged);
        api->findChild<RoomReadiness *>()->findChild<QTimer *>()->start(0);
        QVERIFY(changes.wait());
        QVERIFY(api->roomWarning().endsWith("its name or its secret is missing."_s));
        settings::set("Keycloak/clientId"_s, "a"_s);
        settings::set("Keycloak/clientSecret"_s, "b"_s);
        QVERIFY(api->roomWarning().endsWith("given a room."_s));
        Config::instance()->applyConfiguration(
            QJsonDocument::fromJson(R"({"plenarLocationId":1})"));
        QVERIFY(api->roomWarning().isEmpty() && changes.count() == 2);
    }

    void outlivesTheQmlEngine()
    {
        services();
        LBAPI *api = LBAPI::instance();
        QVERIFY(api->eventData() && isIdle());
        const QVector<QPointer<QObject>> objects { api, api->config(), api->eventData(),
                                                   api->config()->plenarLocation() };
        {
            QQmlEngine engine;
            QQmlComponent component(&engine);
            component.setData(view, QUrl());
            const std::unique_ptr<QObject> item(component.create());
            QVERIFY2(item, qPrintable(component.errorString()));
            QCOMPARE(item->property("held").toList().size(), objects.size());
            engine.collectGarbage();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCOMPARE(notice()->title(), "From QML"_s);
        }
        QVERIFY(!objects.contains(nullptr));
        QCOMPARE(notice()->title(), "From QML"_s);
    }

private:
    bool refresh(Fault fault)
    {
        services().setFault(Route::Schedule, fault);
        LBAPI::instance()->refreshEventData();
        return isIdle();
    }

    static void passMinute()
    {
        QMetaObject::invokeMethod(
            LBAPI::instance()->findChild<ClockWatch *>()->findChild<QTimer *>(), "timeout");
    }

    /** Waits until no download is pending and only the current schedule is left. */
    static bool isIdle()
    {
        return QTest::qWaitFor([] {
            return !LBAPI::instance()->findChild<QNetworkAccessManager *>()
                && LBAPI::instance()->findChildren<EventData *>().size() == 1;
        });
    }
};

static const RegisterTest<TestLbapi> registered;

#include "tst_lbapi.moc"
