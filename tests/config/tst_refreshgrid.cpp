// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/refreshgrid.h"
#include "support/testcase.h"

class TestRefreshGrid : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void leadsToTheNextPoint_data()
    {
        columns<QTime, int, int>("now", "interval", "expected");
        row("midnight", QTime(0, 0), 300, 300500);
        row("on the multiple", QTime(10, 5), 300, 300500);
        row("just after the point", QTime(10, 5, 0, 501), 300, 299999);
        row("10 s ahead", QTime(10, 4, 50, 500), 300, 10000);
        row("less than 10 s ahead", QTime(10, 4, 50, 501), 300, 309999);
        row("900 ms ahead", QTime(10, 4, 59, 600), 300, 300900);
        row("just before midnight", QTime(23, 59, 59, 999), 300, 300501);
        row("shortest interval", QTime(10, 4, 45), 30, 15500);
        row("no part of the day", QTime(23, 59), 1000, 660500);
    }

    void leadsToTheNextPoint()
    {
        const std::chrono::seconds interval(at<int>("interval"));
        const auto time = timeToNextRefresh(at<QTime>("now"), interval);
        QTEST(static_cast<int>(time.count()), "expected");
    }
};

static const RegisterTest<TestRefreshGrid> registered;

#include "tst_refreshgrid.moc"
