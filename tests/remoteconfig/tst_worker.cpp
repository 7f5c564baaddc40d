// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "api/lbapi.h"
#include "config/config.h"
#include "net/accesstoken.h"
#include "remoteconfig/worker.h"
#include "support/testcase.h"
#include "support/workerrunner.h"

#include <QNetworkRequest>
#include <QTimer>

using namespace simulator;
using namespace std::chrono_literals;

class TestWorker : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void takesTokenAndConfigurationAcrossThreads()
    {
        const WorkerRunner<Worker> running(makeWorker());
        QSignalSpy applied(Config::instance(), &Config::configChanged);
        QVERIFY(applied.wait());
        QTRY_VERIFY(!LBAPI::instance()->accessToken().isEmpty());

        const auto request = services().requests(Route::Configuration).constLast();
        QVERIFY(request.accepted); // bearer, Accept and Accept-Language are as the service wants
        QNetworkRequest bearer;
        QVERIFY(accesstoken::authorize(bearer));
        QCOMPARE(bearer.rawHeader("Authorization"), request.headers.value("authorization"));

        QVERIFY(settings::own().contains("locationName=Hörsaal 1"_s));
    }

    void keepsTheSettingsWhenTheServiceFails_data()
    {
        columns<Fault, QString>("fault", "message");
        row("server error", Fault::ServerError, "Failed to get configuration.");
        row("never answered", Fault::Hang, "Failed to get configuration.");
        row("too large", Fault::Oversize, "Failed to get configuration.");
        row("redirect", Fault::Redirect, "Failed to parse config response:");
        row("list", Fault::EmptyList, "Config response is not an object.");
    }

    void keepsTheSettingsWhenTheServiceFails()
    {
        const QString message = at("message");
        const auto fault = at<Fault>("fault");
        services().setFault(Route::Configuration, fault);
        log().expect(message);
        for (const auto &text : { "Network error"_s, "Giving up request"_s })
            log().allow(text);
        const QString before = settings::own();
        const WorkerRunner<Worker> running(
            makeWorker({ fault == Fault::Hang ? 1000ms : 5000ms, 5s, 1024 * 1024 }));
        QTRY_VERIFY(log().lines().join(QLatin1Char('\n')).contains(message));
        QCOMPARE(settings::own(), before);

        services().clearFaults();
        QSignalSpy applied(Config::instance(), &Config::configChanged);
        running.post("getConfiguration");
        QVERIFY(applied.wait());
    }

    void asksAgainAtOnceWhenToldOfATokenTwice()
    {
        const WorkerRunner<Worker> running(makeWorker());
        QSignalSpy applied(running.worker, &Worker::newConfiguration);
        QVERIFY(applied.wait());
        services().setFault(Route::Configuration, Fault::Hang);
        running.post("getConfiguration");
        QTRY_COMPARE(services().requestCount(Route::Configuration), 2);
        log().expect("_nrCfg already set."_s);
        log().expect("Network error"_s); // of the one that is given up
        running.post("onAccessTokenAvailable");
        QTRY_COMPARE(services().requestCount(Route::Configuration), 3);
        services().clearFaults();
        QTRY_COMPARE(applied.count(), 2); // may have come already
        QCOMPARE(running.worker->findChildren<QTimer *>("fetch"_s).size(), 2);
    }

private:
    /** A worker whose tokens go to LBAPI. */
    Worker *makeWorker(const RequestLimits &limits = {})
    {
        services();
        return new Worker(LBAPI::instance(), limits);
    }
};

static RegisterTest<TestWorker> registerWorker;

#include "tst_worker.moc"
