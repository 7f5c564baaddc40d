// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "httptest.h"
#include "simulator/tokenroute.h"

#include <QJsonDocument>

using namespace simulator;

namespace {

const QByteArray booking = R"({"type":1,"time":"2024-05-13T10:05:00","logDelay":-5,)"
                           R"("transmissionDelay":3000000000,"tid":169552957,"locationId":1})";
const QByteArray login = R"({"username":"kim","password":"Größe-42!","tid":"0a1b2c99"})";
const QByteArray presence = "/rs/log/v2";
const QByteArray registration = "/iddb/api/transponder-registration/";
const QByteArray page = "/iddb/transponder-registration/0a1b2c99/";

QByteArray bookingOfType(char type)
{
    return QByteArray(booking).replace(R"("type":1)", QByteArray(R"("type":)") + type);
}

} // namespace

/** The services that exchange JSON: presence and registration. */
class TestServices : public HttpTest
{
    Q_OBJECT

private Q_SLOTS:
    void areStrict_data()
    {
        columns<QByteArray, QByteArray, int, QByteArray>("path", "body", "status", "text");
        const auto get = [](const QByteArray &path, int status, const QByteArray &text = {}) {
            row(path.constData(), path, QByteArray(), status, text);
        };
        get(presence + "?transponder=1&location=-1", 200, "niemandem");
        get(presence + "?location=1&transponder=169552957", 200, R"("present":true)");
        get(presence + "?transponder=0A1B2C3D&location=1", 400);
        get(presence + "?transponder=1&location=1&location=1", 400);
        get(registration + "0a1b2c99/", 200, R"("owned":false)");
        get(registration + "A1B2C3D/", 404);
        const auto post = [](const QByteArray &good, const QByteArray &part,
                             const QByteArray &other, int status, const QByteArray &text) {
            row((part + " -> " + other).constData(), good == login ? registration : presence,
                QByteArray(good).replace(part, other), status, text);
        };
        post(booking, R"("type":1)", R"("type":1)", 200, "um 10:05 Uhr");
        post(booking, R"("type":1)", R"("type":2)", 200, "Auf Wiedersehen");
        post(booking, R"(,"locationId":1)", "", 400, "locationId");
        post(booking, R"("type")", R"("kind":1,"type")", 400, "kind");
        post(booking, R"("type":1)", R"("type":4)", 400, "type");
        post(booking, ":-5", ":0.5", 400, "logDelay");
        post(booking, "05:00", "05", 400, "time");
        post(login, "kim", "kim", 200, R"("error":null)");
        post(login, "0a1b2c99", "0A1B2C3D", 200, R"("error":"owned")");
        post(login, "0a1b2c99", "a1b2c99", 400, "card");
        post(login, "username", "name", 400, "username");
    }

    void areStrict()
    {
        QVERIFY(services().setPresent(0x0A1B2C3D, true));
        const auto path = at<QByteArray>("path");
        const auto body = at<QByteArray>("body");
        const bool takesNoToken = path.startsWith(presence + '?');
        QCOMPARE(ask(path, body, takesNoToken ? QByteArray() : token()), at<int>("status"));
        QVERIFY2(m_body.contains(at<QByteArray>("text")), m_body.constData());
        QCOMPARE(ask(path, body, takesNoToken ? token() : "Bearer x"), takesNoToken ? 400 : 401);
    }

    void takeEffectEvenIfTheResponseIsLost()
    {
        QVERIFY(services().setPresent(0x0A1B2C3D, true));
        services().setFault(Route::PresenceBooking, Fault::ServerError);
        QCOMPARE(ask(presence, booking, token()), 500);
        QCOMPARE(services().presenceBookings().size(), 0);
        services().setFault(Route::PresenceBooking, Fault::Drop);
        ask(presence, bookingOfType('2'), token());
        QCOMPARE(services().presenceBookings().size(), 1);
        QCOMPARE(ask(presence + "?transponder=169552957&location=1", {}, {}), 200);
        QVERIFY(m_body.contains(R"("present":false)"));
        services().clearFaults();
        QCOMPARE(ask(presence, bookingOfType('3'), token()), 200);
        QVERIFY(m_body.contains("Willkommen"));

        m_manager.setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
        services().setFault(Route::Registration, Fault::RedirectAway);
        QCOMPARE(ask(registration, login, token()), 200); // from the other server
        QCOMPARE(services().strayRequests().value(0).body, login);
        QCOMPARE(services().registrations().size(), 0);
        QCOMPARE(ask(page, "any", {}), 200);
        QVERIFY(services().registrations().value(0).byPhone);
        QCOMPARE(ask(registration + "0A1B2C99/", {}, token()), 200);
        QVERIFY(m_body.contains("Kim"));
    }

private:
    /** Sends a POST, or a GET if @p body is empty. Returns the status; m_body is the response. */
    int ask(const QByteArray &path, const QByteArray &body, const QByteArray &authorization,
            const QByteArray &type = "application/json; charset=UTF-8")
    {
        Headers headers { { "Accept", "application/json" }, { "Accept-Language", "de_DE" } };
        if (!authorization.isEmpty())
            headers.append({ "Authorization", authorization });
        QNetworkReply *reply = body.isEmpty()
            ? get(path, headers)
            : post(path, body, headers << Headers::value_type("Content-Type", type));
        const int status = statusOf(reply);
        m_body = reply->readAll();
        return status;
    }

    QByteArray token()
    {
        const QByteArray id = QByteArray(TokenRoute::clientId) + ':' + TokenRoute::clientSecret;
        ask(TokenRoute::path, "grant_type=client_credentials", "Basic " + id.toBase64(),
            "application/x-www-form-urlencoded");
        const QJsonDocument json = QJsonDocument::fromJson(m_body);
        return "Bearer " + json[QLatin1String("access_token")].toString().toLatin1();
    }

    QByteArray m_body;
};

static const RegisterTest<TestServices> registered;

#include "tst_services.moc"
