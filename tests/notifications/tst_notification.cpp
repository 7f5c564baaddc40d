// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "notifications/notificationhandle.h"
#include "support/notices.h"
#include "support/testcase.h"

#include <QMetaProperty>

#include <limits>
#include <thread>

class TestNotification : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void restartsTheCountdown()
    {
        Notification notification;
        const QSignalSpy changes(&notification, &Notification::timeoutChanged);
        notification.setTimeout(0);
        notification.setTimeout(60000);
        notification.findChild<QTimer *>()->start(1000); // as if most of the time had passed
        notification.startTimer();
        QVERIFY(notification.remainingTime() <= 1000);
        notification.setTimeout(60000);
        QVERIFY(notification.remainingTime() > 1000);
        notification.setTimeout(0);
        QCOMPARE(notification.remainingTime(), 0);
        QCOMPARE(changes.count(), 3);
    }

    void countsDownFromTheLongestTimeout()
    {
        const Notification notification(0, {}, {}, ~0U, false, true);
        QVERIFY(notification.remainingTime() > std::numeric_limits<int>::max() - 60000);
        // At some moments the end of a coarse timer is rounded beyond the largest number.
        QCOMPARE(notification.findChild<QTimer *>()->timerType(), Qt::PreciseTimer);
    }

    void endsTheCountdownByItsDefaultAction()
    {
        log().expect("Unhandled default action."_s);
        const QStringList names { "confirmed"_s, "canceled"_s, "removed"_s, ""_s };
        QString heard;
        const auto make = [&](uint timeout, int action) {
            auto n = std::make_unique<Notification>(0, ""_s, ""_s, timeout, false, true);
            n->setDefaultAction(static_cast<Notification::Action>(action));
            connect(n.get(), &Notification::confirmed, this, [&] { heard += "confirmed"_s; });
            connect(n.get(), &Notification::canceled, this, [&] { heard += "canceled"_s; });
            connect(n.get(), &Notification::removed, this, [&] { heard += "removed"_s; });
            heard.clear();
            return n;
        };
        for (int action = 0; action < names.size(); ++action) {
            const auto expiring = make(1, action);
            QTRY_VERIFY(!expiring->findChild<QTimer *>());
            QCOMPARE(heard, names.at(action));
            for (const char *slot : { "confirm", "cancel", "remove" }) {
                const auto n = make(60000, action);
                QMetaObject::invokeMethod(n.get(), slot);
                QVERIFY2(heard.startsWith(QString::fromLatin1(slot)), slot);
                QCOMPARE(n->remainingTime() == 0, heard == names.at(action));
            }
        }
    }

    void changesOnceAndInItsOwnThread()
    {
        Notification n;
        const QMetaObject *meta = n.metaObject();
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
            const QMetaProperty property = meta->property(i);
            if (!property.isWritable() || property.isEnumType())
                continue;
            const QSignalSpy changes(&n, property.notifySignal());
            const QVariant old = property.read(&n);
            const QVariant other(old.type() == QVariant::Bool ? !old.toBool() : 1);
            property.write(&n, old);
            std::thread([&] { property.write(&n, other); }).join();
            QVERIFY2(property.read(&n) == old && changes.isEmpty(), property.name());
            QCoreApplication::sendPostedEvents(&n);
            QVERIFY2(property.read(&n) == other.toInt() && changes.count() == 1, property.name());
            property.write(&n, other);
            const bool restarts = qstrcmp(property.name(), "timeout") == 0;
            QVERIFY2(changes.count() == (restarts ? 2 : 1), property.name());
        }
    }

    void showsARepeatedErrorOnce()
    {
        QCOMPARE(notices().length(), 0);
        const auto repeat = [] {
            NotificationHandle::showError("Error"_s, "Again"_s, 60000);
            return notice();
        };
        Notification *error = repeat();
        error->findChild<QTimer *>()->start(1000);
        QVERIFY(repeat() == error && error->remainingTime() > 1000);
        error->setTimeout(0); // somebody wants to read it
        QVERIFY(repeat() == error && error->timeout() == 0 && notices().length() == 1);
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
        notification.reset();
        QVERIFY(own.isNull() && !foreign.isNull());
    }
};

static const RegisterTest<TestNotification> registered;

#include "tst_notification.moc"
