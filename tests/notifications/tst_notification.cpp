// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "notifications/notification.h"
#include "support/testcase.h"

#include <QElapsedTimer>
#include <QMetaProperty>
#include <QThread>

#include <limits>

static constexpr auto properties
    = { "type",     "title",       "message",    "timeout",      "timeoutCancelable",
        "closable", "confirmable", "cancelable", "defaultAction" };

/** The values of all properties. */
static QString state(const Notification &notification)
{
    QStringList values;
    for (const char *name : properties)
        values.append(notification.property(name).toString());
    values.last().setNum(notification.defaultAction()); // an enum has no text
    return values.join(QLatin1Char('|'));
}

class TestNotification : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void startsAsItIsMade()
    {
        const QDateTime before = QDateTime::currentDateTime();
        const Notification byQml;
        QCOMPARE(state(byQml), "0|||0|false|true|true|false|2"_s);
        QCOMPARE(byQml.remainingTime(), 0);
        QVERIFY(before <= byQml.dateTime() && byQml.dateTime() <= QDateTime::currentDateTime());
        Notification byCode(Notification::ERR, "T"_s, "M"_s, 60000, true, false);
        QCOMPARE(state(byCode), "3|T|M|60000|true|false|false|false|2"_s);
        QVERIFY(byCode.remainingTime() > 50000);

        byCode.setDefaultAction(Notification::CONFIRM);
        byCode.set(Notification::INFO, "A"_s, "B"_s, 0);
        QCOMPARE(state(byCode), "0|A|B|0|true|true|false|false|0"_s);
        byCode.set(Notification::INFO, "A"_s, "B"_s, 0, false);
        QCOMPARE(state(byCode), "0|A|B|0|false|true|false|false|0"_s);
        byCode.set(Notification::LOADING, "C"_s, "D"_s, 0, true, false);
        QCOMPARE(state(byCode), "4|C|D|0|true|false|false|false|0"_s);
    }

    void restartsTheCountdown()
    {
        Notification notification;
        const QSignalSpy changes(&notification, &Notification::timeoutChanged);
        QSignalSpy removals(&notification, &Notification::removed);
        notification.setTimeout(0);
        QCOMPARE(changes.count(), 0);
        notification.setTimeout(600);
        QTRY_VERIFY(notification.remainingTime() < 550);
        notification.setTimeout(600);
        QVERIFY(notification.remainingTime() > 550);
        notification.startTimer();
        QVERIFY(removals.wait());
        QCOMPARE(removals.count(), 1);
        notification.setTimeout(60000);
        notification.setTimeout(0);
        QCOMPARE(notification.remainingTime(), 0);
        QCOMPARE(changes.count(), 4);
    }

    void countsDownFromTheLongestTimeout()
    {
        constexpr int longest = std::numeric_limits<int>::max();
        QElapsedTimer watch; // Qt may align long timers to whole seconds: not just at one moment
        for (watch.start(); watch.elapsed() < 200;) {
            for (const uint timeout : { uint(longest), ~0U }) {
                const Notification notification(0, {}, {}, timeout, false, true);
                QCOMPARE(notification.timeout(), timeout);
                QVERIFY(notification.remainingTime() > longest - 60000);
            }
        }
    }

    void actsOnceWhenTimeIsUp()
    {
        log().expect("Unhandled default action."_s);
        const QStringList expected { "confirmed"_s, "canceled"_s, "removed"_s, ""_s };
        for (int action = 0; action < expected.size(); ++action) {
            Notification n(0, {}, {}, 1, false, true);
            n.setDefaultAction(static_cast<Notification::Action>(action));
            QString heard;
            connect(&n, &Notification::confirmed, this, [&heard] { heard += "confirmed"_s; });
            connect(&n, &Notification::canceled, this, [&heard] { heard += "canceled"_s; });
            connect(&n, &Notification::removed, this, [&heard] { heard += "removed"_s; });
            QTRY_VERIFY(!n.findChild<QTimer *>());
            QCOMPARE(heard, expected.at(action));
            QCOMPARE(n.remainingTime(), 0);
        }
    }

    void stopsTheCountdownByItsDefaultActionOnly_data()
    {
        columns<QString, QString, int>("slot", "signal", "stops");
        row("confirm", "confirm", "2confirmed(Notification*)", int(Notification::CONFIRM));
        row("cancel", "cancel", "2canceled(Notification*)", int(Notification::CANCEL));
        row("remove", "remove", "2removed(Notification*)", int(Notification::CLOSE));
    }

    void stopsTheCountdownByItsDefaultActionOnly()
    {
        for (int action = 0; action < Notification::ACTION_COUNT; ++action) {
            Notification n(0, {}, {}, 60000, false, true);
            n.setDefaultAction(static_cast<Notification::Action>(action));
            const QSignalSpy heard(&n, qPrintable(at("signal")));
            QMetaObject::invokeMethod(&n, qPrintable(at("slot")));
            QCOMPARE(heard.count(), 1);
            QCOMPARE(heard.first().first().value<Notification *>(), &n);
            QCOMPARE(n.remainingTime() == 0, action == at<int>("stops"));
        }
    }

    void changesOnceAndInItsOwnThread_data()
    {
        columns<QString, bool, bool>("property", "isButton", "isThreadSafe");
        for (const char *name : properties)
            row(name, name, false, qstrcmp(name, "defaultAction") != 0);
        for (const char *name : { "icon", "text", "highlighted", "flashing", "enabled" })
            row(name, name, true, false);
    }

    void changesOnceAndInItsOwnThread()
    {
        Notification notification;
        NotificationButton button;
        QObject *object = at<bool>("isButton") ? static_cast<QObject *>(&button) : &notification;
        const auto *meta = object->metaObject();
        const auto property = meta->property(meta->indexOfProperty(qPrintable(at("property"))));
        const QSignalSpy changes(object, property.notifySignal());
        const QVariant old = property.read(object);
        const QVariant other = old.type() == QVariant::Bool ? QVariant(!old.toBool()) : QVariant(1);
        QVERIFY(property.write(object, old));
        QCOMPARE(changes.count(), 0);
        if (at<bool>("isThreadSafe")) {
            runElsewhere([&] { property.write(object, other); });
            QCOMPARE(property.read(object), old);
            QCoreApplication::sendPostedEvents(object);
        } else {
            property.write(object, other);
        }
        QCOMPARE(property.read(object).toInt(), other.toInt());
        QCOMPARE(changes.count(), 1);
        QVERIFY(property.write(object, other));
        QCOMPARE(changes.count(), at("property") == "timeout"_s ? 2 : 1);
    }

    void setsAllInItsOwnThread()
    {
        Notification notification;
        QVector<QThread *> threads;
        const auto record = [&threads] { threads.append(QThread::currentThread()); };
        connect(&notification, &Notification::titleChanged, this, record, Qt::DirectConnection);
        runElsewhere([&notification] {
            notification.set(Notification::WARNING, "A"_s, "B"_s, 60000);
            notification.setTitle("C"_s);
        });
        QCOMPARE(state(notification), state(Notification()));
        QCoreApplication::sendPostedEvents(&notification);
        QCOMPARE(state(notification), "2|C|B|60000|true|true|true|false|2"_s);
        QCOMPARE(threads, QVector<QThread *>(2, thread()));
    }

    void deletesButtonsOfItsOwn()
    {
        QObject parent;
        auto notification = std::make_unique<Notification>();
        const QSignalSpy changes(notification.get(), &Notification::buttonsChanged);
        const QPointer<NotificationButton> own = new NotificationButton;
        const QPointer<NotificationButton> foreign = new NotificationButton(&parent);
        notification->addButton(own);
        notification->addButton(foreign);
        QCOMPARE(changes.count(), 2);
        auto *early = new NotificationButton(&parent);
        notification->addButton(early);
        delete early;
        QCOMPARE(notification->buttons(), QList<NotificationButton *>({ own, foreign }));
        const QSignalSpy clicks(notification.get(), &Notification::buttonClicked);
        notification->clickButton(5);
        QCOMPARE(clicks.value(0).value(0).toInt(), 5);
        QCOMPARE(clicks.value(0).value(1).value<Notification *>(), notification.get());
        notification.reset();
        QVERIFY(own.isNull());
        QVERIFY(!foreign.isNull());
    }

private:
    /** Runs @p work in a thread of its own, and returns when it is done. */
    static void runElsewhere(const std::function<void()> &work)
    {
        const std::unique_ptr<QThread> thread(QThread::create(work));
        thread->start();
        thread->wait();
    }
};

static const RegisterTest<TestNotification> registered;

#include "tst_notification.moc"
