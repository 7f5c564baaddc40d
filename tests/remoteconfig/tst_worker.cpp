// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/config.h"
#include "net/accesstoken.h"
#include "remoteconfig/worker.h"
#include "support/testcase.h"

#include <QNetworkRequest>
#include <QThread>
#include <QTimer>

using namespace simulator;
using namespace std::chrono_literals;

/** Hears of tokens as the API object does. */
class TokenReceiver : public QObject
{
    Q_OBJECT

public:
    QStringList tokens;
    QThread *calledIn = nullptr;

public Q_SLOTS:
    void setAccessToken(const QString &token)
    {
        tokens.append(token);
        calledIn = QThread::currentThread();
        Q_EMIT received();
    }

Q_SIGNALS:
    void received();
};

class TestWorker : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void takesTokenAndConfigurationAcrossThreads()
    {
        const Running running(makeWorker());
        Worker *worker = running.worker;
        QSignalSpy applied(Config::instance(), &Config::configChanged);
        QVERIFY(applied.wait());
        QTRY_COMPARE(m_receiver.tokens.size(), 1);
        QCOMPARE(m_receiver.calledIn, QThread::currentThread());
        QVERIFY(worker->thread() != QThread::currentThread());

        const auto request = services().requests(Route::Configuration).constLast();
        QVERIFY(request.accepted); // bearer, Accept and Accept-Language are as the service wants
        QNetworkRequest bearer;
        QVERIFY(accesstoken::authorize(bearer));
        QCOMPARE(bearer.rawHeader("Authorization"), request.headers.value("authorization"));

        const Config *later = settings::restart();
        QCOMPARE(later->locationName(), "Hörsaal 1"_s);
        QCOMPARE(later->plenarLocationId(), 1);
    }

    void keepsTheSettingsWhenTheServiceFails_data()
    {
        columns<Fault, QString>("fault", "message");
        row("server error", Fault::ServerError, "Failed to get configuration.");
        row("not found", Fault::NotFound, "Failed to get configuration.");
        row("dropped", Fault::Drop, "Failed to get configuration.");
        row("never answered", Fault::Hang, "Failed to get configuration.");
        row("too large", Fault::Oversize, "Failed to get configuration.");
        row("captive portal", Fault::CaptivePortal, "Failed to parse config response:");
        row("redirect", Fault::Redirect, "Failed to parse config response:");
        row("broken JSON", Fault::BrokenJson, "Failed to parse config response:");
        row("empty", Fault::Empty, "Failed to parse config response:");
        row("list", Fault::EmptyList, "Config response is not an object.");
    }

    void keepsTheSettingsWhenTheServiceFails()
    {
        const QString message = at("message");
        const auto fault = at<Fault>("fault");
        services().setFault(Route::Configuration, fault);
        log().expect(message);
        if (message.startsWith("Failed to get"_s))
            log().expect("Network error"_s);
        if (fault == Fault::Oversize)
            log().expect("since its body is too large"_s);
        const QString before = settings::own();
        const Running running(
            makeWorker({ fault == Fault::Hang ? 100ms : 5000ms, 5s, 1024 * 1024 }));
        QTRY_VERIFY(log().lines().join(QLatin1Char('\n')).contains(message));
        QCOMPARE(settings::own(), before);

        services().clearFaults();
        QSignalSpy applied(Config::instance(), &Config::configChanged);
        post(running.worker, "getConfiguration");
        QVERIFY(applied.wait());
    }

    void livesWithHostileValues()
    {
        services().setFault(Route::Configuration, Fault::HostileValues);
        const Running running(makeWorker());
        QSignalSpy applied(Config::instance(), &Config::configChanged);
        QVERIFY(applied.wait());
        const Config *config = Config::instance();
        QCOMPARE(config->inactivityTimeout(), 10);
        QCOMPARE(config->initialItem(), "Default.qml"_s); // a map counts as 0
        QVERIFY(config->locationName().size() > 100000);
    }

    void asksAgainAtOnceWhenToldOfATokenTwice()
    {
        const Running running(makeWorker());
        Worker *worker = running.worker;
        QSignalSpy applied(worker, &Worker::newConfiguration);
        QVERIFY(applied.wait());
        services().setFault(Route::Configuration, Fault::Hang);
        post(worker, "getConfiguration");
        QTRY_COMPARE(services().requestCount(Route::Configuration), 2);
        log().expect("_nrCfg already set."_s);
        log().expect("Network error"_s); // of the one that is given up
        post(worker, "onAccessTokenAvailable");
        QTRY_COMPARE(services().requestCount(Route::Configuration), 3);
        services().clearFaults();
        QVERIFY(applied.wait());
        QCOMPARE(worker->findChildren<QTimer *>("fetch"_s).size(), 2);
    }

private:
    /** A worker in its thread, as the program makes it; the thread ends with this object. */
    struct Running
    {
        explicit Running(Worker *w)
            : worker(w)
        {
            worker->moveToThread(&thread);
            connect(&thread, &QThread::finished, worker, &QObject::deleteLater);
            connect(&thread, SIGNAL(started()), worker, SLOT(init()));
            thread.start();
        }
        Q_DISABLE_COPY_MOVE(Running)
        ~Running()
        {
            thread.quit();
            thread.wait();
        }

        QThread thread;
        Worker *worker;
    };

    Worker *makeWorker(const RequestLimits &limits = {})
    {
        services();
        Config::instance();
        m_receiver.tokens.clear();
        return new Worker(&m_receiver, limits);
    }

    static void post(Worker *worker, const char *slot)
    {
        QMetaObject::invokeMethod(worker, slot, Qt::QueuedConnection);
    }

    TokenReceiver m_receiver;
};

static RegisterTest<TestWorker> registerWorker;

#include "tst_worker.moc"
