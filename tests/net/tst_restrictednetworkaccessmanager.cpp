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

    void refusesHarmfulImages_data()
    {
        columns<QByteArray, QString>("image", "problem");
        const auto svg = [](const QByteArray &attributes, const QByteArray &content = "<g/>") {
            return R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:x="x" )" + attributes + '>'
                + content + "</svg>";
        };
        const QByteArray small = R"(width="9" height="9")";
        row("PNG", picture(0), "");
        row("SVG", "<?xml version='1.0'?>\n" + svg(small, "<path d='M1 1h1v1z'/>"), "");
        row("large data", picture(5000), "Refusing request of the user interface");
        row("many pixels", picture(0, 2001), "2001 x 2001 pixels");
        row("large SVG", svg(R"(viewBox="0 0 90000 90000")"), "90000 x 90000 pixels");
        row("compressed SVG", QByteArray::fromHex("1f8b0800000000000003"), "not PNG");
        row("entity", "<!DOCTYPE svg [<!ENTITY a 'b'>]>" + svg(small), "document type");
        row("attributes", svg(small, '<' + QByteArray(99, '=') + "/>"), "too many attributes");
        row("depth", svg(small, QByteArray("<g>").repeated(32)), "nested too deeply");
        row("name spaces", svg(small, QByteArray("<g xmlns:y='y'/>").repeated(15)), "name spaces");
        row("use", svg(small, "<use/>"), "element use");
        row("link", svg(small, "<g x:href='#a'/>"), "attribute href");
        row("reference", svg(small, "<g fill='URL(#a)'/>"), "attribute fill");
        row("dashes", svg(small, "<g style='stroke-dasharray:1'/>"), "attribute style");
    }

    void refusesHarmfulImages()
    {
        if (!at("problem").isEmpty())
            log().expect(at("problem"));
        const auto item = makeView();
        const auto data = QString::fromLatin1(at<QByteArray>("image").toBase64());
        item->setProperty("source", "data:;base64,"_s + data);
        QTRY_COMPARE(item->property("status").toInt(),
                     int(at("problem").isEmpty() ? Ready : Error));
    }

private:
    enum ImageStatus { Ready = 1, Error = 3 };

    static QByteArray picture(int padding, int edge = 8)
    {
        QByteArray png;
        QBuffer buffer(&png);
        QImage(edge, edge, QImage::Format_Mono).save(&buffer, "PNG");
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

    RestrictedNetworkAccessManagerFactory m_factory { RequestLimits { 5s, 2s, 5000 } };
    std::unique_ptr<QQmlEngine> m_engine;
};

static const RegisterTest<TestRestrictedNetworkAccessManager> registered;

#include "tst_restrictednetworkaccessmanager.moc"
