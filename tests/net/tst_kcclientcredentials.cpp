// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/kcclientcredentials.h"
#include "net/xnetworkaccessmanager.h"
#include "support/testcase.h"

#include <QThread>
#include <QTimer>

#include <thread>

using namespace simulator;
using namespace std::chrono_literals;

class TestKCClientCredentials : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_limits = { 2s, 2s, 100000 }; }

    void asksByItsCredentialsAndRenewsByTheRefreshToken()
    {
        Client client(*this, m_limits);
        client.kc.grant();
        client.kc.grant(); // one is enough
        QVERIFY(client.changed.wait());
        QCOMPARE(bodies(), QList<QByteArray> { "grant_type=client_credentials" });
        QCOMPARE(client.timer()->interval(), 27000);
        const QString first = client.kc.accessToken();
        QCOMPARE(client.changed.takeFirst().first().toString(), first);

        client.kc.refresh();
        client.kc.refresh();
        QVERIFY(client.changed.wait());
        QCOMPARE(bodies().size(), 2);
        // The service has taken it, whose tokens hold characters that a form has to escape.
        QVERIFY(
            bodies().constLast().startsWith("grant_type=refresh_token&refresh_token=refresh%2B"));
        QVERIFY(client.kc.accessToken() != first);
        QCOMPARE(client.available.count(), 1);
    }

    void renewsByANewGrantWithoutARefreshToken()
    {
        services().setFault(Route::Token, Fault::NoRefreshToken);
        Client client(*this, m_limits);
        client.kc.grant();
        QVERIFY(client.changed.wait());
        client.kc.refresh(); // the log trap would tell of a warning
        QVERIFY(client.changed.wait());
        const QByteArray grant = "grant_type=client_credentials";
        QCOMPARE(bodies(), (QList<QByteArray> { grant, grant }));
    }

    void fallsBackToAGrantWhenTheRefreshTokenIsRefused()
    {
        Client client(*this, m_limits);
        client.kc.grant();
        QVERIFY(client.changed.wait());
        services().setFault(Route::Token, Fault::ExpiredRefreshToken);
        announceNetworkError();
        log().expect("KC: failed to process reply: Network or HTTP error: "_s);
        log().expect("Refresh failed, calling grant()."_s);
        client.kc.refresh();
        QVERIFY(client.changed.wait());
        QCOMPARE(services().requestCount(Route::Token), 3);
    }

    void keepsItsTokenWhenTheServerFails_data()
    {
        columns<Fault, QString, bool>("fault", "reason", "isNetworkError");
        row("wrong credentials", Fault::WrongCredentials, "Network or HTTP error: ", true);
        row("dropped", Fault::Drop, "Network or HTTP error: ", true);
        row("never answered", Fault::Hang, "Network or HTTP error: Operation canceled", true);
        row("redirect", Fault::Redirect, "Failed to read JSON: ", false);
        row("captive portal", Fault::CaptivePortal, "Failed to read JSON: ", false);
    }

    void keepsItsTokenWhenTheServerFails()
    {
        const auto fault = at<Fault>("fault");
        if (fault == Fault::Hang)
            m_limits.transferTimeout = 100ms;
        Client client(*this, m_limits);
        m_limits.transferTimeout = 2s;
        client.kc.grant();
        QVERIFY(client.changed.wait());
        const QString held = client.kc.accessToken();
        QVERIFY(!held.isEmpty());

        services().setFault(Route::Token, fault);
        if (at<bool>("isNetworkError"))
            announceNetworkError();
        log().expect("KC: failed to process reply: "_s + at("reason"));
        log().expect("Grant failed, retrying in 60s."_s);
        client.kc.grant();
        QTRY_COMPARE(client.timer()->interval(), 60000);
        QVERIFY(client.timer()->isActive());
        QCOMPARE(client.kc.accessToken(), held);

        services().clearFaults();
        QMetaObject::invokeMethod(client.timer(), "timeout");
        QVERIFY(client.changed.wait());
        QVERIFY(client.kc.accessToken() != held);
        QCOMPARE(client.available.count(), 1);
        QCOMPARE(client.timer()->interval(), 27000);
    }

    void mayBeCalledFromAnyThread()
    {
        Client client(*this, m_limits);
        std::thread([&client] { client.kc.grant(); }).join();
        QCOMPARE(services().requestCount(Route::Token), 0); // it waits for this event loop
        QVERIFY(client.changed.wait());
        std::thread([&client] { client.kc.refresh(); }).join();
        QVERIFY(client.changed.wait());
        QCOMPARE(services().requestCount(Route::Token), 2);
    }

private:
    struct Client
    {
        Client(TestKCClientCredentials &test, const RequestLimits &limits)
            : kc((test.services(), &manager), limits)
        {
        }
        [[nodiscard]] QTimer *timer() const { return kc.findChild<QTimer *>("renewal"_s); }

        XNetworkAccessManager manager;
        KCClientCredentials kc;
        QSignalSpy available { &kc, &KCClientCredentials::accessTokenAvailable };
        QSignalSpy changed { &kc, &KCClientCredentials::accessTokenChanged };
    };

    void announceNetworkError() { log().expect("Network error"_s); }

    QList<QByteArray> bodies()
    {
        QList<QByteArray> list;
        const auto requests = services().requests(Route::Token);
        for (const RecordedRequest &request : requests)
            list += request.body;
        return list;
    }

    RequestLimits m_limits;
};

static RegisterTest<TestKCClientCredentials> registerKCClientCredentials;

#include "tst_kcclientcredentials.moc"
