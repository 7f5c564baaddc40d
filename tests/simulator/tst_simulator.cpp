// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "httptest.h"
#include "simulator/commandinterpreter.h"
#include "simulator/kioskrunner.h"
#include "simulator/sampleday.h"

#include <QElapsedTimer>
#include <QMessageAuthenticationCode>
#include <QRandomGenerator>
#include <QTcpSocket>
#include <QTemporaryFile>
#include <QtEndian>

#include <csignal>

using namespace simulator;

namespace {

const QByteArray secret = "0123456789abcdef0123456789abcdef";
const QByteArray record = R"(<?xml version="1.0" encoding="UTF-8"?><attendance>)"
                          "<clientTime>2024-05-13T10:05:00</clientTime><locationId>1</locationId>"
                          "<transponderId>169552957</transponderId></attendance>";

/** A token as the kiosk makes it, with the HMAC of Qt instead of the simulator's. */
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
    void dayHasACurrentAndANextEvent_data()
    {
        columns<QTime>("time");
        for (const char *time :
             { "00:00:00", "04:59:00", "09:14:59", "14:30:00", "20:45:00", "23:50:00", "23:59:59" })
            row(time, QTime::fromString(QLatin1String(time)));
    }

    void dayHasACurrentAndANextEvent()
    {
        const auto time = at<QTime>("time");
        const QDateTime now(QDate(2024, 5, 13), time, Qt::UTC);
        const SampleDay day(now, { 1 });
        QVERIFY(day.events().size() >= 9);
        int current = 0;
        int next = 0;
        int overlaps = 0;
        bool hasPast = false;
        QDateTime previousEnd;
        for (const SampleDay::Event &event : day.events()) {
            const qint64 wait = now.secsTo(event.start);
            QVERIFY(event.end > event.start && event.start.date() >= now.date());
            QVERIFY2(wait <= 0 || wait >= 1800, "an event begins too soon");
            current += wait <= 0 && event.end > now ? 1 : 0;
            next += wait >= 1800 && wait <= 3600 ? 1 : 0;
            overlaps += previousEnd > event.start ? 1 : 0;
            hasPast = hasPast || event.end <= now;
            previousEnd = event.end;
        }
        QCOMPARE(QVector<int>({ current, next, overlaps }), QVector<int>({ 1, 1, 1 }));
        QCOMPARE(hasPast, time > QTime(5, 0));
        QCOMPARE(previousEnd.date() == now.date(), time < QTime(23, 0));
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
        request("no such service", "schedule", "plan", "404");
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

    void servesAFileAsItChanges()
    {
        QTemporaryFile file;
        QVERIFY(file.open() && services().setScheduleFile(file.fileName(), nullptr));
        for (const QByteArray &content : { QByteArray(), QByteArray("<schedule/>") }) {
            QVERIFY(file.write(content) == content.size() && file.flush());
            QNetworkReply *reply = getToday();
            QVERIFY(ends(reply));
            QCOMPARE(reply->readAll(), content);
        }
    }

    void aNewFaultReleasesAndStopEndsPendingRequests()
    {
        services().setFault(Route::Schedule, Fault::Hang);
        QNetworkReply *released = getToday();
        QTRY_COMPARE(services().requestCount(Route::Schedule), 1);
        services().setFault(Route::Schedule, Fault::Drip);
        QVERIFY(ends(released));
        QCOMPARE(released->error(), QNetworkReply::NoError);

        QNetworkReply *dripping = getToday();
        QTRY_VERIFY(dripping->header(QNetworkRequest::ContentLengthHeader).isValid());
        services().setFault(Route::Schedule, Fault::Hang);
        QVERIFY(ends(dripping));
        QNetworkReply *hanging = getToday();
        QTRY_COMPARE(services().requestCount(Route::Schedule), 3);
        services().stop();
        QVERIFY(ends(hanging));
        QVERIFY(hanging->error() != QNetworkReply::NoError);
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
        document("unknown card", 200, ">169552957<", ">18446744073709551615<");
        document("stale", 403, "1", "1", 310'000);
        document("from the future", 403, "1", "1", -310'000);
        document("no declaration", 400, R"(<?xml version="1.0" encoding="UTF-8"?>)", "");
        document("wrong root", 400, "attendance>", "presence>");
        document("element missing", 400, "<locationId>1</locationId>", "");
        document("wrong order", 400, "</attendance>", "<lag>5</lag></attendance>");
        document("cut off", 400, "</attendance>", "");
        document("German time", 400, "2024-05-13T10", "13.05.2024 10");
        document("lag in words", 400, "<locationId>", "<lag>5s</lag><locationId>");
        document("hexadecimal card", 400, ">169552957<", ">0A1B2C3D<");
        document("signed card", 400, ">169552957<", ">+169552957<");
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

    void spoilsResponses_data()
    {
        columns<Route, Fault, int, QByteArray, int>("route", "fault", "logged", "text", "error");
        const auto response = [](Route route, Fault fault, int logged, const QByteArray &text,
                                 QNetworkReply::NetworkError error = QNetworkReply::NoError) {
            row(qPrintable(nameOf(route) + QLatin1Char(' ') + nameOf(fault)), route, fault, logged,
                text, int(error));
        };
        response(Route::Schedule, Fault::Drip, 0, "</schedule>");
        response(Route::Schedule, Fault::Empty, 0, "");
        response(Route::Schedule, Fault::EntityBomb, 0, "<!ENTITY");
        response(Route::Schedule, Fault::Gzip, 0, "\x1f\x8b");
        response(Route::Schedule, Fault::InvalidValue, 0, "<schedule");
        response(Route::Schedule, Fault::Oversize, 0, "</schedule>");
        response(Route::Schedule, Fault::WrongRoot, 0, "<menu");
        response(Route::Attendance, Fault::CaptivePortal, 0, "<html");
        response(Route::Attendance, Fault::NotFound, 0, "", QNetworkReply::ContentNotFoundError);
        response(Route::Attendance, Fault::Redirect, 0, "Moved");
        response(Route::Attendance, Fault::Refuse, 0, "", QNetworkReply::RemoteHostClosedError);
        response(Route::Attendance, Fault::ServerError, 0, "", QNetworkReply::InternalServerError);
        response(Route::Attendance, Fault::Drip, 1, "</attendanceResponse>");
        response(Route::Attendance, Fault::Drop, 1, "<?xml", QNetworkReply::RemoteHostClosedError);
        response(Route::Attendance, Fault::Hang, 1, "</attendanceResponse>");
        response(Route::Attendance, Fault::InvalidValue, 1, "<timeout>5s</timeout>");
        response(Route::Attendance, Fault::Slow, 1, "</attendanceResponse>");
        response(Route::Attendance, Fault::Truncated, 1, "<attendanceResponse>");
        response(Route::Attendance, Fault::WrongRoot, 1, "</attendance>");
    }

    void spoilsResponses()
    {
        const auto route = at<Route>("route");
        const auto fault = at<Fault>("fault");
        services().setDripInterval(std::chrono::milliseconds(fault == Fault::Slow ? 200 : 0));
        services().setFault(route, fault);
        const auto ask
            = [&] { return route == Route::Schedule ? getToday() : log(record, token(record, 0)); };
        QElapsedTimer timer;
        timer.start();
        QNetworkReply *reply = ask();
        // Qt sends a request twice if the connection ends without a response.
        QTRY_VERIFY(services().requestCount(route) > 0);
        QCOMPARE(services().attendanceRecords().size(), at<int>("logged"));
        if (fault == Fault::Hang)
            services().clearFaults();
        QVERIFY(ends(reply));
        QVERIFY(fault != Fault::Slow || timer.elapsed() >= 200);
        QCOMPARE(int(reply->error()), at<int>("error"));
        const QByteArray body = reply->readAll();
        QVERIFY(body.contains(at<QByteArray>("text")));
        QCOMPARE(body.isEmpty(), fault == Fault::Empty || fault == Fault::Refuse);
        QCOMPARE(body.size() > 64 * 1024 * 1024, fault == Fault::Oversize);

        services().clearFaults();
        reply = ask();
        QVERIFY(ends(reply));
        QCOMPARE(reply->rawHeader("Content-Type"), QByteArray("application/xml; charset=utf-8"));
    }

    void runsCommands_data()
    {
        columns<QString>("output");
        row(" fault  schedule  entity-bomb ", "schedule: entity-bomb");
        row("fault schedule melt", "error: unknown fault \"melt\", try help");
        row("fault lunch hang", "error: unknown route \"lunch\", try faults");
        row("fault schedule", "error: usage: fault ROUTE KIND");
        row("fault presence-booking drop", "presence-booking: drop");
        row("schedule /no/such/file", "error: /no/such/file: No such file or directory");
        row("requests", "no requests yet");
        row("tap 0A1B2C3D", "error: there is no reader, see --no-reader and --run");
        row("quit", "bye");
        row("quit now", "error: usage: quit");
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

    void runsTheKioskWithPrivateSettings()
    {
        const QString url = "'http://127.0.0.1:1/Hörsaal,;/'yyyy-MM-dd"_s;
        KioskRunner kiosk;
        QVERIFY2(kiosk.prepare({ { "eventDataUrlTemplate"_s, url } }),
                 qPrintable(kiosk.errorString()));
        QCOMPARE(settings::read(kiosk.settingsPath()),
                 "[General]\neventDataUrlTemplate=\"%1\"\n"_s.arg(url));
        QCOMPARE(int(QFile::permissions(kiosk.settingsPath()) & 0x77), 0);

        const QSignalSpy finished(&kiosk, &KioskRunner::finished);
        kiosk.start("sh"_s,
                    { "-c"_s,
                      "test -O \"$XDG_RUNTIME_DIR\" && grep -q eventDataUrlTemplate "
                      "\"$XDG_CONFIG_HOME/Kettlewood/Lumenboard2.conf\" && exit 7"_s });
        QTRY_COMPARE(finished.value(0).value(0).toInt(), 7);
        kiosk.start("tail"_s, { "-f"_s, "/dev/null"_s });
        kiosk.stop();
        QTRY_COMPARE(finished.value(1).value(0).toInt(), 128 + SIGTERM);
        kiosk.start("/no/such/kiosk"_s, {});
        QTRY_COMPARE(finished.value(2).value(0).toInt(), 127);
    }

private:
    QNetworkReply *getToday()
    {
        return get(today().path().toLatin1(), { { "Accept-Encoding", "identity" } });
    }
    QNetworkReply *log(const QByteArray &document, const QByteArray &signature,
                       const QByteArray &type = "application/xml")
    {
        return post("/rs/lumenboard-legacy/attendancelog", document,
                    { { "Content-Type", type }, { "X-Plenar-Token", signature } });
    }
};

static const RegisterTest<TestSimulator> registered;

#include "tst_simulator.moc"
