// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/inputeventmonitor.h"
#include "support/testcase.h"

class TestInputEventMonitor : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void hearsTouchesAndClicksOnly()
    {
        InputEventMonitor monitor;
        const QSignalSpy inputs(&monitor, &InputEventMonitor::inputEvent);
        QObject target;
        QSet<int> heard;
        for (int type = QEvent::None; type < QEvent::User; ++type) {
            QEvent event(static_cast<QEvent::Type>(type));
            const int before = inputs.count();
            QVERIFY2(!monitor.eventFilter(&target, &event), "an event was consumed");
            if (inputs.count() > before)
                heard.insert(type);
        }
        QCOMPARE(heard, (QSet<int> { QEvent::MouseButtonPress, QEvent::TouchBegin }));
        QCOMPARE(inputs.count(), 2);
    }
};

static const RegisterTest<TestInputEventMonitor> registered;

#include "tst_inputeventmonitor.moc"
