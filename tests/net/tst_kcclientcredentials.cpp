// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/kcclientcredentials.h"
#include "net/xnetworkaccessmanager.h"
#include "support/testcase.h"

#include <QTimer>

#include <thread>

using namespace simulator;
using namespace std::chrono_literals;

class TestKCClientCredentials : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void asksByItsCredentialsAndRenewsByTheRefreshToken()
    {
        Client client(*this);
        client.kc.grant();
        QVERIFY(client.takesToken()); // one grant is enough
        QCOMPARE(bodies(), QList<QByteArray> { "grant_type=client_credentials" });
        QCOMPARE(client.timer()->interval(), 27000);
        const QString first = client.kc.accessToken();
        QCOMPARE(client.changed.takeFirst().first().toString(), first);

        client.kc.refresh();
        client.kc.refresh();
        QVERIFY(client.changed.wait());
        QCOMPARE(bodies().size(), 2);
        // The service's tokens hold characters that a form has to escape.
        QVERIFY(
            bodies().constLast().startsWith("grant_type=refresh_token&refresh_token=refresh%2B"));
        QVERIFY(client.kc.accessToken() != first);
        QCOMPARE(client.available.count(), 1);
    }

    void renewsByANewGrantWithoutAGoodRefreshToken_data()
    {
        columns<Fault, int>("fault", "requests");
        row("none", Fault::NoRefreshToken, 2);
        row("refused", Fault::ExpiredRefreshToken, 3);
    }

    void renewsByANewGrantWithoutAGoodRefreshToken()
    {
        const auto fault = at<Fault>("fault");
        services().setFault(Route::Token, fault);
        Client client(*this);
        QVERIFY(client.takesToken());
        if (fault == Fault::ExpiredRefreshToken) {
            log().expect("KC: failed to process reply: Network or HTTP error: "_s);
            log().expect("Refresh failed, calling grant()."_s);
            log().expect("Network error"_s);
        }
        client.kc.refresh();
        QVERIFY(client.changed.wait());
        QTEST(bodies().size(), "requests");
        QCOMPARE(bodies().constLast(), QByteArray("grant_type=client_credentials"));
    }

    void keepsItsTokenWhenTheServerFails_data()
    {
        columns<Fault, QString>("fault", "reason");
        row("wrong credentials", Fault::WrongCredentials,
            "Network or HTTP error: Host requires authentication [invalid_client]");
        row("never answered", Fault::Hang, "Network or HTTP error: Operation canceled");
        row("redirect", Fault::Redirect, "Failed to read JSON: ");
    }

    void keepsItsTokenWhenTheServerFails()
    {
        const auto fault = at<Fault>("fault");
        Client client(*this, fault == Fault::Hang ? 2s : 5s);
        QVERIFY(client.takesToken());
        const QString held = client.kc.accessToken();
        QVERIFY(!held.isEmpty());

        services().setFault(Route::Token, fault);
        log().allow("Network error"_s);
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

    void takesEditedCredentials()
    {
        services().setFault(Route::Token, Fault::NoRefreshToken);
        Client client(*this);
        QVERIFY(client.takesToken());
        const QString file = settings::read(settings::userFile());
        settings::write(settings::userFile(), QString(file).replace("Geheimnis"_s, "Rätsel"_s));
        QMetaObject::invokeMethod(client.timer(), "timeout"); // reads the file
        QVERIFY(client.changed.wait());

        log().expect("KC: failed to process reply: "_s);
        log().expect("Grant failed, retrying in 60s."_s);
        log().expect("Network error"_s);
        QMetaObject::invokeMethod(client.timer(), "timeout");
        QTRY_COMPARE(client.timer()->interval(), 60000);
    }

    void mayBeCalledFromAnyThread()
    {
        Client client(*this);
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
        explicit Client(TestKCClientCredentials &test, std::chrono::seconds timeout = 5s)
            : kc((test.services(), &manager), RequestLimits { timeout, 10s, 100000 })
        {
        }
        bool takesToken()
        {
            kc.grant();
            return changed.wait();
        }
        [[nodiscard]] QTimer *timer() const { return kc.findChild<QTimer *>("renewal"_s); }

        XNetworkAccessManager manager;
        KCClientCredentials kc;
        QSignalSpy available { &kc, &KCClientCredentials::accessTokenAvailable };
        QSignalSpy changed { &kc, &KCClientCredentials::accessTokenChanged };
    };

    QList<QByteArray> bodies()
    {
        QList<QByteArray> list;
        const auto requests = services().requests(Route::Token);
        for (const RecordedRequest &request : requests)
            list += request.body;
        return list;
    }
};

static RegisterTest<TestKCClientCredentials> registerKCClientCredentials;

#include "tst_kcclientcredentials.moc"
