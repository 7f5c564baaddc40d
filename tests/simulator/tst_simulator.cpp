// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "httptest.h"
#include "simulator/commandinterpreter.h"
#include "simulator/sampleday.h"

#include <QElapsedTimer>
#include <QMessageAuthenticationCode>
#include <QRandomGenerator>
#include <QTcpSocket>
#include <QtEndian>

using namespace simulator;

namespace {

const QByteArray secret = "0123456789abcdef0123456789abcdef";
const QByteArray record = R"(<?xml version="1.0" encoding="UTF-8"?><attendance>)"
                          "<clientTime>2024-05-13T10:05:00</clientTime><locationId>1</locationId>"
                          "<transponderId>169552957</transponderId></attendance>";

/** A token as the kiosk makes it. Uses Qt's HMAC to check that of the simulator. */
QByteArray token(const QByteArray &document, qint64 ageMs)
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

class TestSimulator : public HttpTest
{
    Q_OBJECT

private Q_SLOTS:
    void dayHasACurrentAndANextEvent()
    {
        for (const int seconds : { 0, 17'999, 33'299, 52'200, 85'800, 86'399 }) {
            const QDateTime now(QDate(2024, 5, 13), QTime(0, 0).addSecs(seconds), Qt::UTC);
            int current = 0;
            int next = 0;
            const SampleDay day(now, { 1 });
            for (const SampleDay::Event &event : day.events()) {
                const qint64 wait = now.secsTo(event.start);
                QVERIFY2(wait <= 0 || wait >= 1800, "an event begins too soon");
                current += wait <= 0 && event.end > now ? 1 : 0;
                next += wait >= 1800 && wait <= 3600 ? 1 : 0;
            }
            QCOMPARE(std::pair(current, next), std::pair(1, 1));
        }
    }

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
        const QByteArray good = token(document, ageMs);
        QCOMPARE(statusOf(log(document, token("another", ageMs))), 403);
        QCOMPARE(statusOf(log(document, good, "text/xml")), 415);
        QCOMPARE(statusOf(log(document, good)), status);
        QCOMPARE(statusOf(log(document, good)), 403); // replayed
        const auto records = services().attendanceRecords();
        QCOMPARE(records.size(), status == 200 ? 1 : 0);
        for (const AttendanceRecord &each : records)
            QCOMPARE(each.lagMs.value_or(0), document.contains("lag") ? -5 : 0);
    }

    void faultsDecideWhetherARecordIsKept_data()
    {
        columns<Fault, int, QByteArray, int>("fault", "kept", "text", "error");
        const auto response = [](Fault fault, int kept, const QByteArray &text,
                                 QNetworkReply::NetworkError error = QNetworkReply::NoError) {
            row(qPrintable(nameOf(fault)), fault, kept, text, int(error));
        };
        response(Fault::CaptivePortal, 0, "<html");
        response(Fault::NotFound, 0, "", QNetworkReply::ContentNotFoundError);
        response(Fault::Redirect, 0, "Moved");
        response(Fault::Refuse, 0, "", QNetworkReply::RemoteHostClosedError);
        response(Fault::ServerError, 0, "", QNetworkReply::InternalServerError);
        response(Fault::Drip, 1, "</attendanceResponse>");
        response(Fault::Drop, 1, "<?xml", QNetworkReply::RemoteHostClosedError);
        response(Fault::Hang, 1, "</attendanceResponse>");
        response(Fault::Slow, 1, "</attendanceResponse>");
        response(Fault::Truncated, 1, "<attendanceResponse>");
    }

    void faultsDecideWhetherARecordIsKept()
    {
        const auto fault = at<Fault>("fault");
        services().setDripInterval(std::chrono::milliseconds(fault == Fault::Slow ? 200 : 0));
        services().setFault(Route::Attendance, fault);
        QElapsedTimer timer;
        timer.start();
        QNetworkReply *reply = log(record, token(record, 0));
        // Qt repeats a request if the connection ends without a response.
        QTRY_VERIFY(services().requestCount(Route::Attendance) > 0);
        QCOMPARE(services().attendanceRecords().size(), at<int>("kept"));
        if (fault == Fault::Hang)
            services().clearFaults();
        QVERIFY(ends(reply));
        QVERIFY(fault != Fault::Slow || timer.elapsed() >= 200);
        QCOMPARE(int(reply->error()), at<int>("error"));
        QVERIFY(reply->readAll().contains(at<QByteArray>("text")));
    }

    void runsCommands_data()
    {
        columns<QString>("output");
        row(" fault  schedule  entity-bomb ", "schedule: entity-bomb");
        row("fault schedule melt", "error: unknown fault \"melt\", try help");
        row("fault lunch hang", "error: unknown route \"lunch\", try faults");
        row("tap 0A1B2C3D", "error: there is no reader, see --no-reader and --run");
        row("quit", "bye");
        row("dance", "error: unknown command \"dance\", try help");
    }

    void runsCommands()
    {
        const QByteArray command = QTest::currentDataTag();
        const auto output = at("output");
        CommandInterpreter interpreter(&services());
        const QSignalSpy quits(&interpreter, &CommandInterpreter::quitRequested);
        services().setCommandHandler(
            [&](const QString &line) { return interpreter.execute(line); });
        services().setFault(Route::Schedule, Fault::NotFound);
        QNetworkReply *reply = post("/control", command);
        QVERIFY(ends(reply));
        QCOMPARE(QString::fromUtf8(reply->readAll()), output + QLatin1Char('\n'));
        QCOMPARE(quits.count(), command == "quit" ? 1 : 0);
        const bool isBomb = output.endsWith("entity-bomb"_s);
        QCOMPARE(services().fault(Route::Schedule), isBomb ? Fault::EntityBomb : Fault::NotFound);
    }

    void auditCountsRepeatedRecords()
    {
        CommandInterpreter interpreter(&services());
        const QByteArray other = QByteArray(record).replace("57</t", "58</t");
        for (const QByteArray &each : { record, other, record })
            QVERIFY(ends(log(each, token(each, 0))));
        const QString audit = interpreter.execute("audit"_s);
        QVERIFY(audit.contains("attendance: 3 requests, 0 refused\n"_s));
        QVERIFY(audit.contains("records: 3 accepted, 2 distinct, 1 more than once"_s));
    }

private:
    QNetworkReply *log(const QByteArray &document, const QByteArray &signature,
                       const QByteArray &type = "application/xml")
    {
        return post("/rs/lumenboard-legacy/attendancelog", document,
                    { { "Content-Type", type }, { "X-Plenar-Token", signature } });
    }
};

static const RegisterTest<TestSimulator> registered;

#include "tst_simulator.moc"
