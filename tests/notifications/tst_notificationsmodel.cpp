// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "notifications/notification.h"
#include "notifications/notificationsmodel.h"
#include "support/testcase.h"

#include <QAbstractItemModelTester>

class TestNotificationsModel : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void listsTheNewestFirst()
    {
        NotificationsModel model;
        const QAbstractItemModelTester tester(&model);
        const QSignalSpy changes(&model, &NotificationsModel::lengthChanged);
        Notification a(0, "a"_s, {}, 0, false, true);
        Notification b(0, "b"_s, {}, 0, false, true);
        Notification c(0, "c"_s, {}, 0, false, true);
        const auto titles = [&model] {
            QString all;
            for (int row = 0; row < model.rowCount(); ++row)
                all += model.index(row).data(256).value<Notification *>()->title();
            return all;
        };
        for (Notification *notification : { &a, &b, &a, &c })
            model.prepend(notification);
        QCOMPARE(titles(), "caba"_s);
        QVERIFY(model.removeFirst(&a));
        QCOMPARE(titles(), "cba"_s);
        QVERIFY(model.removeFirst(&a));
        QVERIFY(!model.removeFirst(&a));
        QCOMPARE(titles(), "cb"_s);
        QCOMPARE(changes.count(), 6);
        QCOMPARE(model.length(), 2);
        QVERIFY(!model.data({}, 256).isValid() && !model.index(0).data(257).isValid());
    }
};

static const RegisterTest<TestNotificationsModel> registered;

#include "tst_notificationsmodel.moc"
