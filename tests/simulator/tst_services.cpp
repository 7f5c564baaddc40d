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

const QByteArray booking = R"({"type":0,"time":"2024-05-13T10:05:00","logDelay":-5,)"
                           R"("transmissionDelay":3000000000,"tid":169552957,"locationId":1})";
const QString presence = QStringLiteral("/rs/log/v2");

} // namespace

/** The services that speak JSON, presence and registration. */
class TestServices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_simulator = std::make_unique<Simulator>();
        QVERIFY(m_simulator->start());
        const QByteArray client = QByteArray(TokenRoute::clientId) + ':' + TokenRoute::clientSecret;
        m_authorization = "Basic " + client.toBase64();
        m_contentType = "application/x-www-form-urlencoded";
        QCOMPARE(ask(QLatin1String(TokenRoute::path), "grant_type=client_credentials"), 200);
        m_authorization = "Bearer " + m_answer[QLatin1String("access_token")].toString().toLatin1();
        m_contentType = "application/json; charset=UTF-8";
    }

    void presenceIsStrict_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("status");
        const auto row = [](int status, const char *part, const char *other) {
            QTest::addRow("%s -> %s", part, other)
                << QByteArray(booking).replace(part, other) << status;
        };
        row(200, ":169552957", ":4294967295");
        row(400, R"(,"locationId":1)", "");
        row(400, R"("type")", R"("kind":1,"type")");
        row(400, R"("type":0)", R"("type":4)");
        row(400, R"("type":0)", R"("type":"0")");
        row(400, ":-5", ":0.5");
        row(400, "05:00", "05");
        for (const char *good : { "?transponder=1&location=-1", "?location=1&transponder=7" })
            QTest::newRow(good) << QByteArray(good) << 200;
        for (const char *bad : { "?transponder=1", "?transponder=0A1B2C3D&location=1",
                                 "?transponder=1&location=1&location=1" })
            QTest::newRow(bad) << QByteArray(bad) << 400;
    }

    void presenceIsStrict()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, status);
        const bool isPosted = text.startsWith('{');
        const QString path = isPosted ? presence : presence + QString::fromLatin1(text);
        const QByteArray body = isPosted ? text : QByteArray();
        QCOMPARE(ask(path, body, isPosted), status);
        QCOMPARE(ask(path, body, !isPosted), isPosted ? 401 : 400); // tokens are not to be spread
        QCOMPARE(m_simulator->presenceBookings().size(), isPosted && status == 200 ? 1 : 0);
    }

    void booksComingAndLeaving_data()
    {
        QTest::addColumn<bool>("comes");
        for (const char *name : { "absent 0", "absent 1", "present 1", "absent 3" })
            QTest::newRow(name) << true;
        for (const char *name : { "present 0", "present 2", "absent 2", "present 3" })
            QTest::newRow(name) << false;
    }

    void booksComingAndLeaving()
    {
        QFETCH(bool, comes);
        const QByteArray name = QTest::currentDataTag();
        const QByteArray document = QByteArray(booking).replace("\":0", "\":" + name.right(1));
        QVERIFY(m_simulator->setPresent(169552957, name.startsWith("present")));
        m_simulator->setFault(Route::PresenceBooking, Fault::ServerError);
        QCOMPARE(ask(presence, document), 500);
        QVERIFY(m_simulator->presenceBookings().isEmpty());
        m_simulator->setFault(Route::PresenceBooking, Fault::Drop);
        ask(presence, document); // booked, though the answer is lost
        QCOMPARE(m_simulator->presenceBookings().size(), 1);
        const auto query = QStringLiteral("?transponder=169552957&location=1");
        QCOMPARE(ask(presence + query, {}, false), 200);
        QCOMPARE(m_answer[QLatin1String("present")], QJsonValue(comes));
    }

private:
    /// Posts the body, or gets if it is empty. Returns the status and keeps the answer.
    int ask(const QString &path, const QByteArray &body = {}, bool withToken = true)
    {
        QNetworkRequest request(m_simulator->baseUrl().resolved(QUrl(path)));
        request.setRawHeader("Accept", "application/json");
        request.setRawHeader("Accept-Language", "de_DE");
        if (!body.isEmpty())
            request.setRawHeader("Content-Type", m_contentType);
        if (withToken)
            request.setRawHeader("Authorization", m_authorization);
        QNetworkReply *reply
            = body.isEmpty() ? m_manager.get(request) : m_manager.post(request, body);
        QSignalSpy(reply, &QNetworkReply::finished).wait();
        m_answer = QJsonDocument::fromJson(reply->readAll());
        return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    }

    QNetworkAccessManager m_manager;
    QByteArray m_authorization;
    QByteArray m_contentType;
    QJsonDocument m_answer;
    std::unique_ptr<Simulator> m_simulator;
};

QTEST_GUILESS_MAIN(TestServices)

#include "tst_services.moc"
