// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/commandinterpreter.h"
#include "simulator/kioskrunner.h"
#include "simulator/sampleday.h"
#include "simulator/simulator.h"

#include <QElapsedTimer>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <csignal>

using namespace simulator;

namespace {

QString wellFormedRoot(const QByteArray &xml)
{
    QXmlStreamReader reader(xml);
    reader.readNextStartElement();
    const QString root = reader.name().toString();
    while (!reader.atEnd())
        reader.readNext();
    return reader.hasError() ? QStringLiteral("error") : root;
}

} // namespace

class TestSimulator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_simulator.reset(); }
    void dayHasSomethingNowAndNext_data();
    void dayHasSomethingNowAndNext();
    void dayKeepsChosenRoomsAndRepeatsEvents();
    void isStrict_data();
    void isStrict();
    void spoilsAnswersWhileTheFaultIsOn_data();
    void spoilsAnswersWhileTheFaultIsOn();
    void servesAFileAsItChanges();
    void switchReleasesAndStopEndsWhatHangs();
    void answersCommands_data();
    void answersCommands();
    void runsTheKioskWithPrivateSettings();

private:
    QNetworkReply *getToday()
    {
        QNetworkRequest request(
            QUrl(QDate::currentDate().toString(m_simulator->scheduleUrlTemplate())));
        request.setRawHeader("Accept-Encoding", "identity");
        QNetworkReply *reply = m_manager.get(request);
        reply->setParent(m_simulator.get());
        return reply;
    }
    static bool ends(QNetworkReply *reply)
    {
        return reply->isFinished() || QSignalSpy(reply, &QNetworkReply::finished).wait(60000);
    }

    QNetworkAccessManager m_manager;
    std::unique_ptr<Simulator> m_simulator;
};

void TestSimulator::init()
{
    m_simulator = std::make_unique<Simulator>();
    QVERIFY(m_simulator->start());
}

void TestSimulator::dayHasSomethingNowAndNext_data()
{
    QTest::addColumn<QTime>("time");
    QTest::addColumn<bool>("hasPast");
    QTest::addColumn<bool>("staysInTheDay");
    QTest::newRow("first minute") << QTime(0, 0) << false << true;
    QTest::newRow("before dawn") << QTime(4, 59) << false << true;
    QTest::newRow("morning") << QTime(9, 14, 59) << true << true;
    QTest::newRow("afternoon") << QTime(14, 30) << true << true;
    QTest::newRow("evening") << QTime(20, 45) << true << true;
    QTest::newRow("late") << QTime(23, 50) << true << false;
    QTest::newRow("last minute") << QTime(23, 59, 59) << true << false;
}

void TestSimulator::dayHasSomethingNowAndNext()
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
    QTEST(hasPast, "hasPast");
    QTEST(previousEnd.date() == now.date(), "staysInTheDay");
}

void TestSimulator::dayKeepsChosenRoomsAndRepeatsEvents()
{
    const QByteArray xml = SampleDay(QDateTime::currentDateTime(), { 3, 6 }).toXml(1000);
    QCOMPARE(wellFormedRoot(xml), QStringLiteral("schedule"));
    QCOMPARE(xml.count("<location "), 2);
    QCOMPARE(xml.count("<event "), 1000);
    QCOMPARE(xml.count("<event id=\"301\">"), 1);
    QCOMPARE(xml.count("<locationId>3<"), 1000);
}

void TestSimulator::isStrict_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("status");
    const QByteArray host = "Host: localhost\r\n";
    const auto row = [](const char *line, const QByteArray &headers, const char *status) {
        QTest::addRow("%s, %d bytes of headers", line, headers.size()) << line + QByteArray("\r\n")
                + headers + "\r\n" << QByteArray(status);
    };
    row("GET /rs/lumenboard/schedule/2024-05-13 HTTP/1.1", host, "200");
    row("GET /rs/lumenboard/schedule/2024-05-13 HTTP/1.1", "", "400");
    row("GET /rs/lumenboard/schedule/2024-05-13 HTTP/1.1", host + host, "400");
    row("GET /rs/lumenboard/schedule/2024-05-13 HTTP/1.0", host, "400");
    row("HEAD /rs/lumenboard/schedule/2024-05-13 HTTP/1.1", host, "405");
    row("POST /rs/lumenboard/schedule/2024-05-13 HTTP/1.1", host + "Content-Length: 0\r\n", "405");
    row("GET /rs/lumenboard/schedule/2024-02-30 HTTP/1.1", host, "404");
    row("GET /rs/lumenboard/schedule/2024-05-13x HTTP/1.1", host, "404");
    row("GET /rs/lumenboard/plan/2024-05-13 HTTP/1.1", host, "404");
}

void TestSimulator::isStrict()
{
    QFETCH(QByteArray, request);
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), quint16(m_simulator->baseUrl().port()));
    socket.write(request);
    QVERIFY(socket.waitForReadyRead());
    QTEST(socket.readLine().split(' ').at(1), "status");
}

void TestSimulator::spoilsAnswersWhileTheFaultIsOn_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("root");
    const auto row
        = [](Fault fault, int status, QNetworkReply::NetworkError error, const char *root) {
              QTest::newRow(qPrintable(nameOf(fault)))
                  << fault << status << int(error) << QString::fromLatin1(root);
          };
    row(Fault::Empty, 200, QNetworkReply::NoError, "error");
    row(Fault::Truncated, 200, QNetworkReply::NoError, "error");
    row(Fault::WrongRoot, 200, QNetworkReply::NoError, "menu");
    row(Fault::InvalidValue, 200, QNetworkReply::NoError, "schedule");
    row(Fault::Oversize, 200, QNetworkReply::NoError, "schedule");
    row(Fault::EntityBomb, 200, QNetworkReply::NoError, "error");
    row(Fault::CaptivePortal, 200, QNetworkReply::NoError, "error");
    row(Fault::Redirect, 302, QNetworkReply::NoError, "error");
    row(Fault::NotFound, 404, QNetworkReply::ContentNotFoundError, "error");
    row(Fault::ServerError, 500, QNetworkReply::InternalServerError, "error");
    row(Fault::Drop, 200, QNetworkReply::RemoteHostClosedError, "error");
    row(Fault::Drip, 200, QNetworkReply::NoError, "schedule");
    row(Fault::Gzip, 200, QNetworkReply::NoError, "error");
}

void TestSimulator::spoilsAnswersWhileTheFaultIsOn()
{
    QFETCH(Fault, fault);
    m_simulator->setDripInterval(std::chrono::milliseconds(0));
    m_simulator->setFault(Route::Schedule, fault);
    QNetworkReply *reply = getToday();
    QVERIFY(ends(reply));
    QTEST(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), "status");
    QTEST(int(reply->error()), "error");
    const QByteArray body = reply->readAll();
    QTEST(wellFormedRoot(body), "root");
    QCOMPARE(body.size() > 64 * 1024 * 1024, fault == Fault::Oversize);

    m_simulator->clearFaults();
    reply = getToday();
    QVERIFY(ends(reply));
    QCOMPARE(reply->header(QNetworkRequest::ContentTypeHeader).toString(),
             QStringLiteral("application/xml; charset=utf-8"));
    QCOMPARE(wellFormedRoot(reply->readAll()), QStringLiteral("schedule"));
    QCOMPARE(m_simulator->requestCount(Route::Schedule), 2);
}

void TestSimulator::servesAFileAsItChanges()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("schedule.xml"));
    for (const QByteArray &content : { QByteArray("<schedule/>"), QByteArray("<schedule> ") }) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        // Once is enough: the second round only edits.
        QVERIFY(m_simulator->requestCount(Route::Schedule) > 0
                || m_simulator->setScheduleFile(path, nullptr));
        QNetworkReply *reply = getToday();
        QVERIFY(ends(reply));
        QCOMPARE(reply->readAll(), content);
    }
}

void TestSimulator::switchReleasesAndStopEndsWhatHangs()
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

void TestSimulator::answersCommands_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("answer");
    const auto row = [](const char *command, const char *answer) {
        QTest::newRow(command) << QString::fromLatin1(command) << QString::fromLatin1(answer);
    };
    row(" fault  schedule  entity-bomb ", "schedule: entity-bomb");
    row("fault schedule melt", "error: unknown fault \"melt\", try help");
    row("fault lunch hang", "error: unknown route \"lunch\", try faults");
    row("fault schedule", "error: usage: fault ROUTE KIND");
    row("faults", "schedule: not-found\ntoken: none\nconfiguration: none");
    row("schedule /no/such/file", "error: /no/such/file: No such file or directory");
    row("schedule default", "serving the generated day");
    row("requests", "no requests yet");
    row("audit",
        "schedule: 0 requests, 0 refused\ntoken: 0 requests, 0 refused\n"
        "configuration: 0 requests, 0 refused");
    row("quit", "bye");
    row("quit now", "error: usage: quit");
    row("dance", "error: unknown command \"dance\", try help");
}

void TestSimulator::answersCommands()
{
    QFETCH(QString, command);
    QFETCH(QString, answer);
    CommandInterpreter interpreter(m_simulator.get());
    const QSignalSpy quits(&interpreter, &CommandInterpreter::quitRequested);
    m_simulator->setCommandHandler([&](const QString &line) { return interpreter.execute(line); });
    m_simulator->setFault(Route::Schedule, Fault::NotFound);

    QNetworkReply *reply = m_manager.sendCustomRequest(
        QNetworkRequest(m_simulator->baseUrl().resolved(QUrl(QStringLiteral("/control")))), "POST",
        command.toUtf8());
    reply->setParent(m_simulator.get());
    QVERIFY(ends(reply));
    QCOMPARE(QString::fromUtf8(reply->readAll()), answer + QLatin1Char('\n'));
    QCOMPARE(quits.count(), command == QLatin1String("quit") ? 1 : 0);
    const bool bomb = answer.endsWith(QLatin1String("entity-bomb"));
    QCOMPARE(m_simulator->fault(Route::Schedule), bomb ? Fault::EntityBomb : Fault::NotFound);
}

void TestSimulator::runsTheKioskWithPrivateSettings()
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
        kiosk.start(QStringLiteral("sh"), { QStringLiteral("-c"), QString::fromLatin1(script) });
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

QTEST_GUILESS_MAIN(TestSimulator)

#include "tst_simulator.moc"
