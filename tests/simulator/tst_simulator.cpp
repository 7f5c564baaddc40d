// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/commandinterpreter.h"
#include "simulator/tokenroute.h"
#include "support/testcase.h"

#include <QJsonDocument>
#include <QMessageAuthenticationCode>
#include <QNetworkReply>
#include <QRandomGenerator>
#include <QTcpSocket>
#include <QtEndian>

using namespace simulator;

namespace {

const QByteArray secret = "0123456789abcdef0123456789abcdef";
const QByteArray record = R"(<?xml version="1.0" encoding="UTF-8"?><attendance>)"
                          "<clientTime>2024-05-13T10:05:00</clientTime><locationId>1</locationId>"
                          "<transponderId>169552957</transponderId></attendance>";
const QByteArray booking = R"({"type":1,"time":"2024-05-13T10:05:00","logDelay":-5,)"
                           R"("transmissionDelay":3000000000,"tid":169552957,"locationId":1})";
const QByteArray login = R"({"username":"kim","password":"Größe-42!","tid":"0a1b2c99"})";
const QByteArray presence = "/rs/log/v2";
const QByteArray registration = "/iddb/api/transponder-registration/";
const QByteArray page = "/iddb/transponder-registration/0a1b2c99/";

/** A signature as the kiosk makes it. Uses Qt's HMAC to check that of the simulator. */
QByteArray signatureOf(const QByteArray &document, qint64 ageMs)
{
    QByteArray time(8, 0);
    qToLittleEndian(QDateTime::currentMSecsSinceEpoch() - ageMs, time.data());
    QByteArray nonce(16, 0);
    QRandomGenerator::global()->generate(nonce.begin(), nonce.end());
    const QByteArray hash = QMessageAuthenticationCode::hash(time + document + nonce, secret,
                                                             QCryptographicHash::Sha256);
    return (time + nonce + hash).toBase64();
}

} // namespace

class TestSimulator : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void isStrict_data()
    {
        columns<QByteArray, QByteArray>("head", "status");
        const QByteArray good
            = "GET /rs/lumenboard/schedule/2024-05-13 HTTP/1.1\r\nHost: localhost\r\n";
        const auto request = [&good](const char *name, const char *part, const char *other,
                                     const QByteArray &status) {
            row(name, QByteArray(good).replace(part, other), status);
        };
        request("good", "1.1", "1.1", "200");
        request("no host", "Host: localhost\r\n", "", "400");
        request("two hosts", "Host", "Host: localhost\r\nHost", "400");
        request("old version", "1.1", "1.0", "400");
        request("other method", "GET", "HEAD", "405");
        request("no such day", "05-13", "02-30", "404");
        request("attendance by GET", "/schedule/2024-05-13", "-legacy/attendancelog", "405");
    }

    void isStrict()
    {
        QTcpSocket socket;
        socket.connectToHost("127.0.0.1"_s, quint16(services().baseUrl().port()));
        socket.write(at<QByteArray>("head") + "\r\n");
        QVERIFY(socket.waitForReadyRead());
        QCOMPARE(socket.readLine().split(' ').at(1), at<QByteArray>("status"));
    }

    void attendanceIsChecked_data()
    {
        columns<int, QByteArray, int>("status", "document", "ageMs");
        const auto document = [](const char *name, int status, const QByteArray &part,
                                 const QByteArray &other, int ageMs = 0) {
            row(name, status, QByteArray(record).replace(part, other), ageMs);
        };
        document("good", 200, "1", "1", 290'000);
        document("re-sent", 200, "<locationId>", "<lag>-5</lag><locationId>");
        document("stale", 403, "1", "1", 310'000);
        document("from the future", 403, "1", "1", -310'000);
        document("no declaration", 400, R"(<?xml version="1.0" encoding="UTF-8"?>)", "");
        document("wrong root", 400, "attendance>", "presence>");
        document("element missing", 400, "<locationId>1</locationId>", "");
        document("wrong order", 400, "</attendance>", "<lag>5</lag></attendance>");
        document("German time", 400, "2024-05-13T10", "13.05.2024 10");
        document("lag in words", 400, "<locationId>", "<lag>5s</lag><locationId>");
        document("hexadecimal card", 400, ">169552957<", ">0A1B2C3D<");
    }

    void attendanceIsChecked()
    {
        const auto status = at<int>("status");
        const auto document = at<QByteArray>("document");
        const auto ageMs = at<int>("ageMs");
        const QByteArray good = signatureOf(document, ageMs);
        QCOMPARE(statusOf(log(document, signatureOf("another", ageMs))), 403);
        QCOMPARE(statusOf(log(document, good, "text/xml")), 415);
        QCOMPARE(statusOf(log(document, good)), status);
        QCOMPARE(statusOf(log(document, good)), 403); // replayed
        const auto records = services().attendanceRecords();
        QCOMPARE(records.size(), status == 200 ? 1 : 0);
        for (const AttendanceRecord &each : records)
            QCOMPARE(each.lagMs.value_or(0), document.contains("lag") ? -5 : 0);
    }

    void jsonIsChecked_data()
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

    void jsonIsChecked()
    {
        QVERIFY(services().setPresent(0x0A1B2C3D, true));
        const auto path = at<QByteArray>("path");
        const auto body = at<QByteArray>("body");
        const bool takesNoToken = path.startsWith(presence + '?');
        QCOMPARE(ask(path, body, takesNoToken ? QByteArray() : token()), at<int>("status"));
        QVERIFY2(m_body.contains(at<QByteArray>("text")), m_body.constData());
        QCOMPARE(ask(path, body, takesNoToken ? token() : "Bearer x"), takesNoToken ? 400 : 401);
    }

    void faultsDecideWhetherARecordIsKept_data()
    {
        columns<Fault, int>("fault", "kept");
        for (const Fault fault : { Fault::CaptivePortal, Fault::NotFound, Fault::Redirect,
                                   Fault::Refuse, Fault::ServerError })
            row(qPrintable(nameOf(fault)), fault, 0);
        for (const Fault fault :
             { Fault::Drip, Fault::Drop, Fault::Hang, Fault::Slow, Fault::Truncated })
            row(qPrintable(nameOf(fault)), fault, 1);
    }

    void faultsDecideWhetherARecordIsKept()
    {
        services().setDripInterval({});
        services().setFault(Route::Attendance, at<Fault>("fault"));
        QNetworkReply *reply = log(record, signatureOf(record, 0));
        // Qt repeats a request if the connection ends without a response.
        QTRY_VERIFY(services().requestCount(Route::Attendance) > 0);
        QCOMPARE(services().attendanceRecords().size(), at<int>("kept"));
        services().clearFaults(); // ends a hanging one
        QVERIFY(ends(reply));
    }

    void auditCountsRepeatedRecords()
    {
        CommandInterpreter interpreter(&services());
        services().setCommandHandler(
            [&](const QString &line) { return interpreter.execute(line); });
        const QByteArray other = QByteArray(record).replace("57</t", "58</t");
        for (const QByteArray &each : { record, other, record })
            QVERIFY(ends(log(each, signatureOf(each, 0))));
        QNetworkReply *reply = send("/control", "audit", {});
        QVERIFY(ends(reply));
        const QByteArray audit = reply->readAll();
        QVERIFY(audit.contains("attendance: 3 requests, 0 refused\n"));
        QVERIFY(audit.contains("records: 3 accepted, 2 distinct, 1 more than once"));
    }

    void keepsWhatFollowsARedirectApart()
    {
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
    using Headers = QList<QNetworkReply::RawHeaderPair>;

    /** Sends a POST, or a GET if @p body is empty. */
    QNetworkReply *send(const QByteArray &path, const QByteArray &body, const Headers &headers)
    {
        QNetworkRequest request(services().baseUrl().resolved(QUrl::fromEncoded(path)));
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        for (const auto &[name, value] : headers)
            request.setRawHeader(name, value);
        return body.isEmpty() ? m_manager.get(request)
                              : m_manager.sendCustomRequest(request, "POST", body);
    }

    static bool ends(QNetworkReply *reply)
    {
        return reply->isFinished() || QSignalSpy(reply, &QNetworkReply::finished).wait(60000);
    }

    static int statusOf(QNetworkReply *reply)
    {
        const auto status = QNetworkRequest::HttpStatusCodeAttribute;
        return ends(reply) ? reply->attribute(status).toInt() : 0;
    }

    QNetworkReply *log(const QByteArray &document, const QByteArray &signature,
                       const QByteArray &type = "application/xml")
    {
        return send("/rs/lumenboard-legacy/attendancelog", document,
                    { { "Content-Type", type }, { "X-Plenar-Token", signature } });
    }

    /** Returns the status; m_body is the response. */
    int ask(const QByteArray &path, const QByteArray &body, const QByteArray &authorization,
            const QByteArray &type = "application/json; charset=UTF-8")
    {
        Headers headers { { "Accept", "application/json" }, { "Accept-Language", "de_DE" } };
        if (!authorization.isEmpty())
            headers.append({ "Authorization", authorization });
        if (!body.isEmpty())
            headers.append({ "Content-Type", type });
        QNetworkReply *reply = send(path, body, headers);
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

    QNetworkAccessManager m_manager;
    QByteArray m_body;
};

static const RegisterTest<TestSimulator> registered;

#include "tst_simulator.moc"
