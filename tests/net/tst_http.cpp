// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/http.h"
#include "support/fakereply.h"
#include "support/testcase.h"

#include <QTcpServer>
#include <QTcpSocket>

using namespace simulator;
using namespace std::chrono_literals;

Q_DECLARE_METATYPE(RequestLimits)

class TestHttp : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void endsEveryRequest_data()
    {
        columns<Fault, int, RequestLimits, QString>("fault", "dripMs", "limits", "reason");
        const char *tooLong = "after its time limit";
        const char *tooLarge = "since its body is too large";
        row("good", Fault::None, 0, RequestLimits { 5s, 5s, 10 }, "");
        row("silent", Fault::Hang, 0, RequestLimits { 1s, 5s, 10 }, "silent");
        row("too slow", Fault::Drip, 500, RequestLimits { 5s, 1s, 10 }, tooLong);
        row("too large", Fault::None, 0, RequestLimits { 5s, 5s, 9 }, tooLarge);
        row("declared too large", Fault::Drip, 10000, RequestLimits { 5s, 5s, 9 }, tooLarge);
    }

    void endsEveryRequest()
    {
        const auto limits = at<RequestLimits>("limits");
        const QString reason = at("reason");
        const bool isLogged = reason.contains(QLatin1Char(' '));
        services().setSchedule("0123456789");
        services().setDripInterval(std::chrono::milliseconds(at<int>("dripMs")));
        services().setFault(Route::Schedule, at<Fault>("fault"));
        if (isLogged)
            log().expect(reason);

        QNetworkAccessManager manager;
        QNetworkReply *reply = http::get(manager, QNetworkRequest(today()), limits);
        QSignalSpy finished(reply, &QNetworkReply::finished);
        QVERIFY(finished.wait(10000));
        QCOMPARE(finished.count(), 1);
        QCOMPARE(log().lines().size(), isLogged ? 1 : 0);
        if (reason.isEmpty())
            QCOMPARE(reply->readAll(), QByteArray("0123456789"));
        else
            QCOMPARE(reply->error(), QNetworkReply::OperationCanceledError);
        const auto headers = services().requests(Route::Schedule).constLast().headers;
        QCOMPARE(headers.values("accept-encoding"), QList<QByteArray> { "identity" });
    }

    void opensNoFile()
    {
        QNetworkAccessManager manager;
        auto *reply = http::get(manager, QNetworkRequest(QUrl("file:///etc/hostname"_s)), {});
        QTRY_COMPARE(reply->error(), QNetworkReply::ProtocolUnknownError);
    }

    void limitsTheHead_data()
    {
        columns<int, int, QByteArray, QString>("lines", "length", "end", "problem");
        const QByteArray empty = "\r\nContent-Length: 0\r\n\r\n";
        const char *endless = "of its response does not end";
        const char *tooLarge = "since its head is too large";
        row("large", 99, 600, empty, "");
        row("long line", 1, 70'000, empty, tooLarge);
        row("many lines", 5'000, 1, empty, tooLarge);
        row("endless", 1, 1, QByteArray(), endless);
        row("endless chunk size", 1, 1, QByteArray("\r\nTransfer-Encoding: chunked\r\n\r\n"),
            endless);
    }

    void limitsTheHead()
    {
        QByteArray head = "HTTP/1.1 200 OK";
        for (int line = 0; line < at<int>("lines"); ++line)
            head += "\r\nX" + QByteArray::number(line) + ":" + QByteArray(at<int>("length"), 'x');
        head += at<QByteArray>("end");
        const QString problem = at("problem");
        if (!problem.isEmpty())
            log().expect(problem);

        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        connect(&server, &QTcpServer::newConnection, this, [&] {
            QTcpSocket *client = server.nextPendingConnection();
            const auto feed = [client] { client->write(QByteArray(100'000, 'x')); };
            if (problem.contains("end"_s))
                connect(client, &QTcpSocket::bytesWritten, client, feed);
            client->write(head);
        });
        QNetworkAccessManager manager;
        const QUrl url("http://127.0.0.1:%1/"_s.arg(server.serverPort()));
        QNetworkReply *reply = http::get(manager, QNetworkRequest(url), {});
        int calls = 0;
        QMetaObject::invokeMethod(
            reply, [&calls] { ++calls; }, Qt::QueuedConnection);
        QTRY_VERIFY_WITH_TIMEOUT(reply->isFinished(), 60000);
        QCOMPARE(reply->error() == QNetworkReply::NoError, problem.isEmpty());
        // Qt would block this thread with what it reads of many lines.
        if (problem.contains("large"_s))
            QVERIFY(reply->rawHeaderList().isEmpty());
        QCOMPARE(calls, 1);
    }

    void countsBytesOfAnUndeclaredBody()
    {
        log().expect("since its body is too large"_s);
        for (const bool isReadAtOnce : { false, true }) {
            FakeReply reply(QUrl("http://plenar.example/"_s));
            QCOMPARE(http::send({}, { 5s, 5s, 1000 }, [&](const auto &) { return &reply; }),
                     &reply);
            if (isReadAtOnce)
                connect(&reply, &QNetworkReply::readyRead, &reply, [&reply] { reply.readAll(); });
            const QSignalSpy finished(&reply, &QNetworkReply::finished);
            reply.feed(QByteArray(600, 'x'));
            reply.feed(QByteArray(400, 'x'));
            QCOMPARE(finished.count(), 0);
            reply.feed("x");
            if (isReadAtOnce)
                reply.tellProgress();
            QCOMPARE(finished.count(), 1);
        }
        QCOMPARE(log().lines().size(), 2);
    }
};

static const RegisterTest<TestHttp> registered;

#include "tst_http.moc"
