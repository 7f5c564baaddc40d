// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/simulator.h"
#include "simulator/tokenroute.h"

#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>

using namespace simulator;

namespace {

const QByteArray booking = R"({"type":1,"time":"2024-05-13T10:05:00","logDelay":-5,)"
                           R"("transmissionDelay":3000000000,"tid":169552957,"locationId":1})";
const QByteArray login = R"({"username":"kim","password":"Größe-42!","tid":"0a1b2c99"})";
const QByteArray presence = "/rs/log/v2";
const QByteArray registration = "/iddb/api/transponder-registration/";
const QByteArray page = "/iddb/transponder-registration/0a1b2c99/";

} // namespace

/** The services that speak JSON, presence and registration. */
class TestServices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_simulator = std::make_unique<Simulator>();
        QVERIFY(m_simulator->start() && m_simulator->setPresent(0x0A1B2C3D, true));
        m_contentType = "application/x-www-form-urlencoded";
        const QByteArray id = QByteArray(TokenRoute::clientId) + ':' + TokenRoute::clientSecret;
        QCOMPARE(ask(TokenRoute::path, "grant_type=client_credentials", "Basic " + id.toBase64()),
                 200);
        const QJsonDocument answer = QJsonDocument::fromJson(m_answer);
        m_token = "Bearer " + answer[QLatin1String("access_token")].toString().toLatin1();
        m_contentType = "application/json; charset=UTF-8";
    }

    void isStrict_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("text");
        const auto get = [](const QByteArray &path, int status, const char *text = "") {
            QTest::newRow(path.constData()) << path << QByteArray() << status << QByteArray(text);
        };
        get(presence + "?transponder=1&location=-1", 200, "niemandem");
        get(presence + "?location=1&transponder=169552957", 200, R"("present":true)");
        get(presence + "?transponder=0A1B2C3D&location=1", 400);
        get(presence + "?transponder=1&location=1&location=1", 400);
        get(registration + "0a1b2c99/", 200, R"("owned":false)");
        get(registration + "0A1B2C3D/", 200, R"("owned":true)");
        get(registration + "A1B2C3D/", 404);
        get(page + "qr.svg", 200, "<svg");
        const auto post = [](const QByteArray &body, const char *part, const char *other,
                             int status, const char *text) {
            QTest::addRow("%s -> %s", part, other)
                << (body == login ? registration : presence)
                << QByteArray(body).replace(part, other) << status << QByteArray(text);
        };
        post(booking, R"("type":1)", R"("type":0)", 200, "Auf Wiedersehen");
        post(booking, R"("type":1)", R"("type":1)", 200, "um 10:05 Uhr");
        post(booking, R"("type":1)", R"("type":2)", 200, "Auf Wiedersehen");
        post(booking, R"("type":1)", R"("type":3)", 200, "Auf Wiedersehen");
        post(booking, "169552957", "4294967295", 200, "niemandem");
        post(booking, R"(,"locationId":1)", "", 400, "locationId");
        post(booking, R"("type")", R"("kind":1,"type")", 400, "kind");
        post(booking, R"("type":1)", R"("type":4)", 400, "type");
        post(booking, ":-5", ":0.5", 400, "logDelay");
        post(booking, "05:00", "05", 400, "time");
        post(login, "", "", 200, R"("error":null)");
        post(login, "42", "43", 200, R"("error":"login")");
        post(login, "kim", "robin", 200, R"("error":"locked")");
        post(login, "0a1b2c99", "0A1B2C3D", 200, R"("error":"owned")");
        post(login, "0a1b2c99", "a1b2c99", 400, "card");
        post(login, "username", "name", 400, "username");
    }

    void isStrict()
    {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, body);
        const bool isTokenless = path.startsWith(presence + '?'); // tokens are not to be spread
        QTEST(ask(path, body, isTokenless ? QByteArray() : m_token), "status");
        QFETCH(QByteArray, text);
        QVERIFY2(m_answer.contains(text), m_answer.constData());
        if (!path.startsWith(page))
            QCOMPARE(ask(path, body, isTokenless ? m_token : "Bearer x"), isTokenless ? 400 : 401);
    }

    void takesEffectAlsoWhenTheAnswerIsLost()
    {
        m_simulator->setFault(Route::PresenceBooking, Fault::ServerError);
        QCOMPARE(ask(presence, booking, m_token), 500);
        QCOMPARE(m_simulator->presenceBookings().size(), 0);
        m_simulator->setFault(Route::PresenceBooking, Fault::Drop);
        ask(presence, QByteArray(booking).replace(":1,\"time", ":2,\"time"), m_token);
        QCOMPARE(m_simulator->presenceBookings().size(), 1);
        QCOMPARE(ask(presence + "?transponder=169552957&location=1", {}, {}), 200);
        QVERIFY(m_answer.contains(R"("present":false)"));
        m_simulator->clearFaults();
        QCOMPARE(ask(presence, QByteArray(booking).replace(":1,\"time", ":3,\"time"), m_token),
                 200);
        QVERIFY(m_answer.contains("Willkommen"));

        m_simulator->setFault(Route::Registration, Fault::RedirectAway);
        QCOMPARE(ask(registration, login, m_token), 200); // of the other server
        QCOMPARE(m_simulator->strayRequests().value(0).body, login);
        QCOMPARE(m_simulator->registrations().size(), 0);
        QCOMPARE(ask(page, "any", {}), 200);
        QVERIFY(m_simulator->registrations().value(0).byPhone);
        QCOMPARE(ask(registration + "0A1B2C99/", {}, m_token), 200);
        QVERIFY(m_answer.contains("Kim"));
    }

private:
    /// Posts the body, or gets if it is empty. Returns the status and keeps the answer.
    int ask(const QByteArray &path, const QByteArray &body, const QByteArray &authorization)
    {
        QNetworkRequest request(m_simulator->baseUrl().resolved(QUrl::fromEncoded(path)));
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                             QNetworkRequest::NoLessSafeRedirectPolicy);
        request.setRawHeader("Accept", "application/json");
        request.setRawHeader("Accept-Language", "de_DE");
        if (!body.isEmpty())
            request.setRawHeader("Content-Type", m_contentType);
        if (!authorization.isEmpty())
            request.setRawHeader("Authorization", authorization);
        QNetworkReply *reply
            = body.isEmpty() ? m_manager.get(request) : m_manager.post(request, body);
        QSignalSpy(reply, &QNetworkReply::finished).wait();
        m_answer = reply->readAll();
        return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    }

    QNetworkAccessManager m_manager;
    QByteArray m_contentType;
    QByteArray m_token;
    QByteArray m_answer;
    std::unique_ptr<Simulator> m_simulator;
};

QTEST_GUILESS_MAIN(TestServices)

#include "tst_services.moc"
