// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/testnotification.h"
#include "notifications/notification.h"
#include "support/testcase.h"

class TestTestNotification : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void staysInItsBounds()
    {
        QMap<QString, QSet<int>> seen;
        for (int i = 0; i < 3000; ++i) {
            const std::unique_ptr<Notification> n(makeTestNotification());
            seen["type"_s].insert(n->type());
            seen["title"_s].insert(n->title().size());
            for (const QString &word : n->message().split(QLatin1Char('\n')))
                seen["word"_s].insert(word.size());
            seen["buttons"_s].insert(n->buttons().size());
            for (const NotificationButton *button : n->buttons()) {
                QCOMPARE(button->icon(), "qrc:/fa/sign-in.svg"_s);
                seen["button"_s].insert(button->text().size());
            }
            seen["countdown"_s].insert(n->timeout() > 0);
            QVERIFY(n->timeout() == 0 || (n->timeout() >= 5000 && n->timeout() < 10000));
            QVERIFY(n->timeout() > 0 || !n->isTimeoutCancelable());
        }
        QString bounds;
        for (auto values = seen.cbegin(); values != seen.cend(); ++values) {
            const auto [least, most] = std::minmax_element(values->cbegin(), values->cend());
            bounds += "%1 %2..%3, "_s.arg(values.key()).arg(*least).arg(*most);
        }
        QCOMPARE(bounds,
                 "button 3..10, buttons 0..3, countdown 0..1, title 1..10, type 0..4, "
                 "word 5..15, "_s);
    }
};

static const RegisterTest<TestTestNotification> registered;

#include "tst_testnotification.moc"
