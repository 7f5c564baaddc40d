// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "buildconfig.h"
#include "config/config.h"
#include "net/xnetworkaccessmanager.h"
#include "support/fakereply.h"
#include "support/testcase.h"

using Error = QNetworkReply::NetworkError;

class TestXNetworkAccessManager : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void sendsTheConfiguredUserAgent()
    {
        XNetworkAccessManager manager;
        QNetworkRequest request(today());
        request.setRawHeader("User-Agent", "Own/1");
        for (const QString &configured : { ""_s, "Saal/1 ä"_s, ""_s }) {
            QMetaObject::invokeMethod(Config::instance(), "userAgentChanged",
                                      Q_ARG(QString, configured));
            QVERIFY(QSignalSpy(manager.get(request), &QNetworkReply::finished).wait());
            const auto sent = services().requests(simulator::Route::Schedule).constLast().headers;
            QCOMPARE(sent.values("user-agent"),
                     QList<QByteArray> { configured.isEmpty() ? "Own/1" : configured.toLatin1() });
        }
    }

    void beginsWithNewConnectionsAfterSilence()
    {
        log().allow("Network error"_s);
        log().expect("beginning with new connections"_s);
        XNetworkAccessManager manager;
        QNetworkRequest request(today());
        services().setFault(simulator::Route::Schedule, simulator::Fault::Hang);
        const QNetworkReply *inFlight = manager.get(request);
        request.setTransferTimeout(100);
        for (int silent = 0; silent < 6; ++silent)
            QVERIFY(QSignalSpy(manager.get(request), &QNetworkReply::finished).wait());
        // The response of a request in flight must not be lost.
        QVERIFY(QSignalSpy(manager.get(request), &QNetworkReply::finished).wait());
        services().setFault(simulator::Route::Schedule, simulator::Fault::None);
        QTRY_VERIFY(inFlight->isFinished());
        QCOMPARE(inFlight->error(), Error::NoError);
        services().setFault(simulator::Route::Schedule, simulator::Fault::Hang);
        for (int silent = 0; silent < 6; ++silent)
            QVERIFY(QSignalSpy(manager.get(request), &QNetworkReply::finished).wait());
        services().setFault(simulator::Route::Schedule, simulator::Fault::None);
        request.setTransferTimeout(0);
        const QNetworkReply *reply = manager.get(request);
        QTRY_VERIFY(reply->isFinished());
        QCOMPARE(reply->error(), Error::NoError);
    }

    void logsErrors_data()
    {
        columns<QString, Error, bool>("host", "error", "isLogged");
        const QString internal = QString::fromLatin1(buildconfig::internalHost);
        row("internal, no host", internal, Error::HostNotFoundError, false);
        row("internal, no page", internal, Error::ContentNotFoundError, false);
        row("internal, other", internal, Error::TimeoutError, true);
        row("longer, no host", internal + ".example"_s, Error::HostNotFoundError, true);
    }

    void logsErrors()
    {
        const XNetworkAccessManager manager;
        const QString address = "http://%1"_s + at("host") + "/b?c=d"_s;
        const QString text = R"(Error transferring %1 - server replied: <html>%2<p>x)"_s;
        FakeReply reply(QUrl(address.arg("a:secret@"_s)));
        QVERIFY(connect(&reply,
                        SIGNAL(errorOccurred(QNetworkReply::NetworkError)),
                               manager.children().first(),
                               SLOT(errorOccured(QNetworkReply::NetworkError))));
        log().allow("Network error"_s);
        reply.fail(at<Error>("error"),
                   text.arg(reply.url().toString(), "\n"_s) + QString(5000, QLatin1Char('x')));
        QCOMPARE(log().lines().size(), at<bool>("isLogged") ? 1 : 0);
        if (!at<bool>("isLogged"))
            return;
        const QString line = log().lines().first();
        const QString shown = address.arg("a@"_s);
        QVERIFY2(line.contains(text.arg(shown, " "_s)) && line.size() < 1000, qPrintable(line));
        QVERIFY2(line.endsWith(" for QUrl(\"%1\")"_s.arg(shown)), qPrintable(line));
    }
};

static const RegisterTest<TestXNetworkAccessManager> registered;

#include "tst_xnetworkaccessmanager.moc"
