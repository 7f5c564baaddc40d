// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/config.h"
#include "net/restrictednetworkaccessmanager.h"
#include "support/testcase.h"

#include <QBuffer>
#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>

using namespace simulator;
using namespace std::chrono_literals;

/** What a view can do to reach the network: show an image, and send a request with a secret. */
static constexpr auto view = R"(
    import QtQuick 2.15
    Image {
        property int code: -1
        function request(url) {
            const call = new XMLHttpRequest();
            call.onreadystatechange = function() {
                if (call.readyState !== XMLHttpRequest.DONE)
                    return;
                code = call.status;
            };
            call.open("GET", url);
            call.setRequestHeader("Authorization", "Bearer secret");
            call.send();
        }
    }
)";

class TestRestrictedNetworkAccessManager : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void guardsTheEngine_data()
    {
        columns<QString, Fault, int, QString>("host", "fault", "padding", "line");
        const char *service = "127.0.0.1";
        row("service", service, Fault::None, 0, "");
        row("foreign host", "localhost", Fault::None, 0, "Refusing request of the user interface");
        row("redirect", service, Fault::Redirect, 0, "TooManyRedirectsError");
        row("hanging", service, Fault::Hang, 0, "after its time limit");
        row("too large", service, Fault::None, 5000, "since its body is too large");
    }

    void guardsTheEngine()
    {
        QUrl url = today();
        url.setHost(at("host"));
        settings::set("quirlUrl"_s, "http://127.0.0.1:1"_s);
        services().setSchedule(picture(at<int>("padding")));
        services().setFault(Route::Schedule, at<Fault>("fault"));
        const bool succeeds = at("line").isEmpty();
        const int requests = at("host") == "localhost"_s ? 0 : 1;
        if (!succeeds)
            log().expect(at("line"));

        const auto item = makeView();
        QMetaObject::invokeMethod(item.get(), "request", Q_ARG(QVariant, url.toString()));
        QTRY_VERIFY(item->property("code").toInt() >= 0);
        QCOMPARE(item->property("code") == 200, succeeds);
        QCOMPARE(services().requestCount(Route::Schedule), requests);
        item->setProperty("source", url);
        QTRY_COMPARE(item->property("status").toInt(), succeeds ? int(Ready) : int(Error));
        QCOMPARE(services().requestCount(Route::Schedule), 2 * requests);
        QVERIFY(succeeds || log().lines().filter(at("line")).size() == 2);
    }

    void takesDataOfModestSize()
    {
        log().expect("Refusing request of the user interface for"_s);
        const auto item = makeView();
        for (const bool isLarge : { false, true }) {
            const QByteArray data = picture(isLarge ? 5000 : 0).toBase64();
            item->setProperty("source", "data:image/png;base64,"_s + QString::fromLatin1(data));
            QTRY_COMPARE(item->property("status").toInt(), isLarge ? int(Error) : int(Ready));
        }
    }

private:
    enum ImageStatus { Ready = 1, Error = 3 };

    static QByteArray picture(int padding)
    {
        QByteArray png;
        QBuffer buffer(&png);
        QImage(8, 8, QImage::Format_Mono).save(&buffer, "PNG");
        return png + QByteArray(padding, '\0');
    }

    std::unique_ptr<QObject> makeView()
    {
        log().allow("Network error"_s);
        log().allow("QML Image"_s);
        Config::instance(); // as at start; images are fetched in a thread of their own
        m_engine = std::make_unique<QQmlEngine>();
        m_engine->setNetworkAccessManagerFactory(&m_factory);
        QQmlComponent component(m_engine.get());
        component.setData(view, QUrl());
        return std::unique_ptr<QObject>(component.create());
    }

    RestrictedNetworkAccessManagerFactory m_factory { RequestLimits { 5s, 1s, 5000 } };
    std::unique_ptr<QQmlEngine> m_engine;
};

static const RegisterTest<TestRestrictedNetworkAccessManager> registered;

#include "tst_restrictednetworkaccessmanager.moc"
