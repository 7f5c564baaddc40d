// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/scheduledocument.h"
#include "support/testcase.h"

#include <QNetworkReply>
#include <QTimer>

using namespace simulator;
using namespace std::chrono_literals;

class TestEventData : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void fetchesUnderAnyFault_data()
    {
        columns<Fault, QString, QString>("fault", "message", "shown");
        const QString fetching = "failed to fetch eventdata: (%1) "_s;
        const QString canceled = fetching.arg(QNetworkReply::OperationCanceledError);
        row("none", Fault::None, "No error"_s, "");
        row("huge", Fault::Huge, "No error"_s, "");
        row("entity bomb", Fault::EntityBomb, "Error reading event data: (2) "_s,
            "The schedule is damaged and therefore incomplete.");
        row("not found", Fault::NotFound, fetching.arg(QNetworkReply::ContentNotFoundError),
            "\nThe service does not find what it was asked for (error 404).");
        row("oversize", Fault::Oversize, canceled, "is incomplete.");
        row("drip", Fault::Drip, canceled, "is incomplete.");
    }

    void fetchesUnderAnyFault()
    {
        const auto fault = at<Fault>("fault");
        const QString message = at("message");
        const bool fails = message != "No error"_s;
        services().setFault(Route::Schedule, fault);
        services().setDripInterval(10ms);
        settings::set("overrideDate"_s, true);
        settings::set("overrideDateDate"_s, "abc"_s);
        log().expect("Setting \"overrideDateDate\" is no date, showing today"_s);
        for (const auto &text : { message, "Network error"_s, "Giving up request"_s })
            log().allow(text);
        RequestLimits limits = EventData::scheduleLimits();
        if (fault == Fault::Drip)
            limits.deadline = 100ms;
        EventData data(limits);
        QSignalSpy finished(&data, &EventData::readEventDataFinished);
        const QSignalSpy changes(&data, &EventData::dataChanged);
        const QSignalSpy errors(&data, &EventData::errorChanged);
        bool blocks = false;
        connect(data.findChild<QNetworkAccessManager *>(), &QNetworkAccessManager::finished, this,
                [&] { blocks = finished.count() > 0; });
        QVERIFY(finished.wait(60000));
        QCOMPARE(blocks, fails && !message.startsWith("Error reading"_s));
        QTRY_VERIFY(!data.findChild<QNetworkAccessManager *>());
        QCOMPARE(finished.count(), 1);
        QCOMPARE(changes.count(), 1);
        QCOMPARE(errors.count(), fails ? 1 : 0);
        QCOMPARE(data.error(), fails);
        QVERIFY2(data.errorMessage().startsWith(message), qPrintable(data.errorMessage()));
        QCOMPARE(data.shownError().right(at("shown").size()), at("shown"));
        QCOMPARE(log().lines().filter(message).size(), fails ? 1 : 0);
        QVERIFY(fails || !data.objects().events.isEmpty());
        QCOMPARE(services().requestCount(Route::Schedule), 1);
    }

    void canBeDiscardedAtAnyTime_data()
    {
        columns<QString>("when");
        for (const char *when : { "downloading", "reading", "linking" })
            row(when, when);
    }

    void canBeDiscardedAtAnyTime()
    {
        const QByteArray event = eventXml("2024-05-13T10:00", "2024-05-13T12:00");
        services().setSchedule(scheduleXml(event.repeated(40000)));
        const QString when = at("when");
        const QPointer<EventData> data(new EventData);
        const QSignalSpy finished(data, &EventData::readEventDataFinished);
        QTimer look; // more often than a slice of linking ends
        connect(&look, &QTimer::timeout, this, [&] {
            if (when == "linking"_s ? data->objects().events.isEmpty()
                                    : when == "reading"_s && log().lines().isEmpty())
                return;
            look.stop();
            data->discard();
            QVERIFY(data && !data->findChild<QNetworkAccessManager *>());
        });
        look.start(1);
        QTRY_VERIFY(data.isNull());
        QCOMPARE(finished.count(), 0);
    }
};

static const RegisterTest<TestEventData> registered;

#include "tst_eventdata.moc"
