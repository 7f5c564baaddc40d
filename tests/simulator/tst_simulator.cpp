// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/commandinterpreter.h"
#include "simulator/kioskrunner.h"
#include "simulator/sampleday.h"
#include "simulator/simulator.h"

#include <QElapsedTimer>
#include <QFile>
#include <QMessageAuthenticationCode>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTemporaryFile>
#include <QTest>
#include <QtEndian>

#include <csignal>

using namespace simulator;

namespace {

const QByteArray secret = "0123456789abcdef0123456789abcdef";
const QByteArray record = R"(<?xml version="1.0" encoding="UTF-8"?><attendance>)"
                          "<clientTime>2024-05-13T10:05:00</clientTime><locationId>1</locationId>"
                          "<transponderId>169552957</transponderId></attendance>";

/// A token as the kiosk makes it, with Qt's keyed hash where the simulator has its own.
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

class TestSimulator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_manager = std::make_unique<QNetworkAccessManager>();
        m_simulator = std::make_unique<Simulator>();
        QVERIFY(m_simulator->start());
    }
    void cleanup() { m_simulator.reset(); }

    void dayHasSomethingNowAndNext_data()
    {
        QTest::addColumn<QTime>("time");
        for (const char *time :
             { "00:00:00", "04:59:00", "09:14:59", "14:30:00", "20:45:00", "23:50:00", "23:59:59" })
            QTest::newRow(time) << QTime::fromString(QLatin1String(time));
    }

    void dayHasSomethingNowAndNext()
    {
        QFETCH(QTime, time);
        const QDateTime now(QDate(2024, 5, 13), time, Qt::UTC);
        const SampleDay day(now, { 1 });
        QVERIFY2(day.events().size() >= 9, "too little happens");
        int running = 0;
        int next = 0;
        int overlaps = 0;
        bool hasPast = false;
        QDateTime previousEnd;
        for (const SampleDay::Event &event : day.events()) {
            const qint64 wait = now.secsTo(event.start);
            QVERIFY(event.end > event.start && event.start.date() >= now.date());
            QVERIFY2(wait <= 0 || wait >= 1800, "something begins too soon");
            running += wait <= 0 && event.end > now ? 1 : 0;
            next += wait >= 1800 && wait <= 3600 ? 1 : 0;
            overlaps += previousEnd > event.start ? 1 : 0;
            hasPast = hasPast || event.end <= now;
            previousEnd = event.end;
        }
        QCOMPARE(running, 1);
        QCOMPARE(next, 1);
        QCOMPARE(overlaps, 1);
        QCOMPARE(hasPast, time > QTime(5, 0));
        QCOMPARE(previousEnd.date() == now.date(), time < QTime(23, 0));
    }

    void isStrict_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<QByteArray>("status");
        const QByteArray host = "Host: localhost\r\n";
        const auto row = [](const char *line, const QByteArray &headers, const char *status) {
            QTest::addRow("%s, %d bytes of headers", line, headers.size()) << line
                    + QByteArray("\r\n") + headers + "\r\n" << QByteArray(status);
        };
        row("GET /rs/lumenboard/schedule/2024-05-13 HTTP/1.1", host, "200");
        row("GET /rs/lumenboard/schedule/2024-05-13 HTTP/1.1", "", "400");
        row("GET /rs/lumenboard/schedule/2024-05-13 HTTP/1.1", host + host, "400");
        row("GET /rs/lumenboard/schedule/2024-05-13 HTTP/1.0", host, "400");
        row("HEAD /rs/lumenboard/schedule/2024-05-13 HTTP/1.1", host, "405");
        row("GET /rs/lumenboard/schedule/2024-02-30 HTTP/1.1", host, "404");
        row("GET /rs/lumenboard/plan/2024-05-13 HTTP/1.1", host, "404");
        row("GET /rs/lumenboard-legacy/attendancelog HTTP/1.1", host, "405");
    }

    void isStrict()
    {
        QFETCH(QByteArray, request);
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), quint16(m_simulator->baseUrl().port()));
        socket.write(request);
        QVERIFY(socket.waitForReadyRead());
        QTEST(socket.readLine().split(' ').at(1), "status");
    }

    void servesAFileAsItChanges()
    {
        QTemporaryFile file;
        QVERIFY(file.open() && m_simulator->setScheduleFile(file.fileName(), nullptr));
        for (const QByteArray &content : { QByteArray(), QByteArray("<schedule/>") }) {
            QVERIFY(file.write(content) == content.size() && file.flush());
            QNetworkReply *reply = getToday();
            QVERIFY(ends(reply));
            QCOMPARE(reply->readAll(), content);
        }
    }

    void switchReleasesAndStopEndsWhatHangs()
    {
        m_simulator->setFault(Route::Schedule, Fault::Hang);
        QNetworkReply *released = getToday();
        QTRY_COMPARE(m_simulator->requestCount(Route::Schedule), 1);
        m_simulator->setFault(Route::Schedule, Fault::Drip);
        QVERIFY(ends(released));
        QCOMPARE(released->error(), QNetworkReply::NoError);

        QNetworkReply *dripping = getToday();
        QTRY_VERIFY(dripping->header(QNetworkRequest::ContentLengthHeader).isValid());
        m_simulator->setFault(Route::Schedule, Fault::Hang);
        QVERIFY(ends(dripping));
        QNetworkReply *hanging = getToday();
        QTRY_COMPARE(m_simulator->requestCount(Route::Schedule), 3);
        QElapsedTimer timer;
        timer.start();
        m_simulator->stop();
        QVERIFY2(timer.elapsed() < 1000, "stop() waited for somebody");
        QVERIFY(ends(hanging));
        QVERIFY(hanging->error() != QNetworkReply::NoError);
    }

    void attendanceIsChecked_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<int>("ageMs");
        const auto row
            = [](const char *name, int status, const char *part, const char *other, int ageMs = 0) {
                  QTest::newRow(name) << status << QByteArray(record).replace(part, other) << ageMs;
              };
        row("good", 200, "", "", 290'000);
        row("re-sent", 200, "<locationId>", "<lag>-5</lag><locationId>");
        row("unknown card", 200, ">169552957<", ">18446744073709551615<");
        row("stale", 403, "", "", 310'000);
        row("from the future", 403, "", "", -310'000);
        row("no declaration", 400, R"(<?xml version="1.0" encoding="UTF-8"?>)", "");
        row("wrong root", 400, "attendance>", "presence>");
        row("element missing", 400, "<locationId>1</locationId>", "");
        row("wrong order", 400, "</attendance>", "<lag>5</lag></attendance>");
        row("cut off", 400, "</attendance>", "");
        row("German time", 400, "2024-05-13T10", "13.05.2024 10");
        row("lag in words", 400, "<locationId>", "<lag>5s</lag><locationId>");
        row("hexadecimal card", 400, ">169552957<", ">0A1B2C3D<");
        row("signed card", 400, ">169552957<", ">+169552957<");
    }

    void attendanceIsChecked()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, document);
        QFETCH(int, ageMs);
        const QByteArray good = token(document, ageMs);
        QCOMPARE(statusOf(log(document, token("another", ageMs))), 403);
        QCOMPARE(statusOf(log(document, good, "text/xml")), 415);
        QCOMPARE(statusOf(log(document, good)), status);
        QCOMPARE(statusOf(log(document, good)), 403); // replayed
        const auto records = m_simulator->attendanceRecords();
        QCOMPARE(records.size(), status == 200 ? 1 : 0);
        for (const AttendanceRecord &each : records)
            QCOMPARE(each.lagMs.value_or(0), document.contains("lag") ? -5 : 0);
    }

    void spoilsAnswersWhileTheFaultIsOn_data()
    {
        QTest::addColumn<Route>("route");
        QTest::addColumn<Fault>("fault");
        QTest::addColumn<int>("logged");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("error");
        const auto row = [](Route route, Fault fault, int logged, const char *text,
                            QNetworkReply::NetworkError error = QNetworkReply::NoError) {
            QTest::addRow("%s %s", qPrintable(nameOf(route)), qPrintable(nameOf(fault)))
                << route << fault << logged << QByteArray(text) << int(error);
        };
        row(Route::Schedule, Fault::Drip, 0, "</schedule>");
        row(Route::Schedule, Fault::Empty, 0, "");
        row(Route::Schedule, Fault::EntityBomb, 0, "<!ENTITY");
        row(Route::Schedule, Fault::Gzip, 0, "\x1f\x8b");
        row(Route::Schedule, Fault::InvalidValue, 0, "<schedule");
        row(Route::Schedule, Fault::Oversize, 0, "</schedule>");
        row(Route::Schedule, Fault::WrongRoot, 0, "<menu");
        row(Route::Attendance, Fault::CaptivePortal, 0, "<html");
        row(Route::Attendance, Fault::NotFound, 0, "", QNetworkReply::ContentNotFoundError);
        row(Route::Attendance, Fault::Redirect, 0, "Moved");
        row(Route::Attendance, Fault::Refuse, 0, "", QNetworkReply::RemoteHostClosedError);
        row(Route::Attendance, Fault::ServerError, 0, "", QNetworkReply::InternalServerError);
        row(Route::Attendance, Fault::Drip, 1, "</attendanceResponse>");
        row(Route::Attendance, Fault::Drop, 1, "<?xml", QNetworkReply::RemoteHostClosedError);
        row(Route::Attendance, Fault::Hang, 1, "</attendanceResponse>");
        row(Route::Attendance, Fault::InvalidValue, 1, "<timeout>5s</timeout>");
        row(Route::Attendance, Fault::Slow, 1, "</attendanceResponse>");
        row(Route::Attendance, Fault::Truncated, 1, "<attendanceResponse>");
        row(Route::Attendance, Fault::WrongRoot, 1, "</attendance>");
    }

    void spoilsAnswersWhileTheFaultIsOn()
    {
        QFETCH(Route, route);
        QFETCH(Fault, fault);
        QFETCH(QByteArray, text);
        m_simulator->setDripInterval(std::chrono::milliseconds(fault == Fault::Slow ? 200 : 0));
        m_simulator->setFault(route, fault);
        const auto ask
            = [&] { return route == Route::Schedule ? getToday() : log(record, token(record, 0)); };
        QElapsedTimer timer;
        timer.start();
        QNetworkReply *reply = ask();
        QTRY_VERIFY(m_simulator->requestCount(route) > 0); // Qt asks twice if it is hung up on
        QTEST(m_simulator->attendanceRecords().size(), "logged");
        if (fault == Fault::Hang)
            m_simulator->clearFaults();
        QVERIFY(ends(reply));
        QVERIFY(fault != Fault::Slow || timer.elapsed() >= 200);
        QTEST(int(reply->error()), "error");
        const QByteArray body = reply->readAll();
        QVERIFY(body.contains(text));
        QCOMPARE(body.isEmpty(), fault == Fault::Empty || fault == Fault::Refuse);
        QCOMPARE(body.size() > 64 * 1024 * 1024, fault == Fault::Oversize);

        m_simulator->clearFaults();
        reply = ask();
        QVERIFY(ends(reply));
        QCOMPARE(reply->rawHeader("Content-Type"), QByteArray("application/xml; charset=utf-8"));
    }

    void answersCommands_data()
    {
        QTest::addColumn<QString>("answer");
        const auto row = [](const char *command, const char *answer) {
            QTest::newRow(command) << QString::fromLatin1(answer);
        };
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

    void answersCommands()
    {
        const QByteArray command = QTest::currentDataTag();
        QFETCH(QString, answer);
        CommandInterpreter interpreter(m_simulator.get());
        const QSignalSpy quits(&interpreter, &CommandInterpreter::quitRequested);
        m_simulator->setCommandHandler(
            [&](const QString &line) { return interpreter.execute(line); });
        m_simulator->setFault(Route::Schedule, Fault::NotFound);
        QNetworkReply *reply = post(QStringLiteral("/control"), command);
        QVERIFY(ends(reply));
        QCOMPARE(QString::fromUtf8(reply->readAll()), answer + QLatin1Char('\n'));
        QCOMPARE(quits.count(), command == "quit" ? 1 : 0);
        const bool bomb = answer.endsWith(QLatin1String("entity-bomb"));
        QCOMPARE(m_simulator->fault(Route::Schedule), bomb ? Fault::EntityBomb : Fault::NotFound);
    }

    void auditTellsWhatCameTwice()
    {
        CommandInterpreter interpreter(m_simulator.get());
        const QByteArray other = QByteArray(record).replace("57</t", "58</t");
        for (const QByteArray &each : { record, other, record })
            QVERIFY(ends(log(each, token(each, 0))));
        const QString audit = interpreter.execute(QStringLiteral("audit"));
        QVERIFY(audit.contains(QLatin1String("attendance: 3 requests, 0 refused\n")));
        QVERIFY(audit.contains(QLatin1String("records: 3 accepted, 2 distinct, 1 more than once")));
    }

    void runsTheKioskWithPrivateSettings()
    {
        const QString url = QStringLiteral("'http://127.0.0.1:1/Hörsaal,;/'yyyy-MM-dd");
        KioskRunner kiosk;
        QVERIFY2(kiosk.prepare({ { QStringLiteral("eventDataUrlTemplate"), url } }),
                 qPrintable(kiosk.errorString()));
        QFile settings(kiosk.settingsPath());
        QVERIFY(settings.open(QIODevice::ReadOnly));
        QCOMPARE(settings.readAll(), "[General]\neventDataUrlTemplate=\"" + url.toUtf8() + "\"\n");
        QCOMPARE(int(settings.permissions() & 0x77), 0);

        QSignalSpy finished(&kiosk, &KioskRunner::finished);
        const auto run = [&](const char *script) {
            kiosk.start(QStringLiteral("sh"),
                        { QStringLiteral("-c"), QString::fromLatin1(script) });
        };
        run("test -O \"$XDG_RUNTIME_DIR\" && grep -q eventDataUrlTemplate "
            "\"$XDG_CONFIG_HOME/Kettlewood/Lumenboard2.conf\" && exit 7");
        QTRY_COMPARE(finished.value(0).value(0).toInt(), 7);
        run("exec tail -f /dev/null");
        kiosk.stop();
        QTRY_COMPARE(finished.value(1).value(0).toInt(), 128 + SIGTERM);
        kiosk.start(QStringLiteral("/no/such/kiosk"), {});
        QTRY_COMPARE(finished.value(2).value(0).toInt(), 127);
    }

private:
    QNetworkReply *getToday()
    {
        QNetworkRequest request(
            QUrl(QDate::currentDate().toString(m_simulator->scheduleUrlTemplate())));
        request.setRawHeader("Accept-Encoding", "identity");
        return m_manager->get(request);
    }
    QNetworkReply *post(const QString &path, const QByteArray &body,
                        const QList<QNetworkReply::RawHeaderPair> &headers = {})
    {
        QNetworkRequest request(m_simulator->baseUrl().resolved(QUrl(path)));
        for (const auto &[name, value] : headers)
            request.setRawHeader(name, value);
        return m_manager->sendCustomRequest(request, "POST", body);
    }
    QNetworkReply *log(const QByteArray &document, const QByteArray &signature,
                       const QByteArray &type = "application/xml")
    {
        return post(QStringLiteral("/rs/lumenboard-legacy/attendancelog"), document,
                    { { "Content-Type", type }, { "X-Plenar-Token", signature } });
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

    std::unique_ptr<QNetworkAccessManager> m_manager;
    std::unique_ptr<Simulator> m_simulator;
};

QTEST_GUILESS_MAIN(TestSimulator)

#include "tst_simulator.moc"
