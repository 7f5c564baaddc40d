// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/startup.h"
#include "attendance/attendancenamecache.h"
#include "attendance/attendancequeue.h"
#include "net/xnetworkaccessmanager.h"
#include "process.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QNetworkReply>

#include <cstdio>
#include <functional>

namespace {

/** Sends the same record repeatedly, with as many requests in flight as the queue. */
void post(QNetworkAccessManager &manager, const QUrl &url, int count,
          const std::function<void()> &finish)
{
    constexpr int maxInFlight = 4;

    struct State
    {
        int unsent;
        int pending;
        std::function<void()> next;
    };
    auto *state = new State { count, count, {} }; // never deleted: the program ends with it
    state->next = [&manager, url, finish, state] {
        if (state->unsent == 0)
            return;
        --state->unsent;
        QNetworkRequest request(url);
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/xml"));
        request.setRawHeader("X-Plenar-Token", QByteArray(76, 'x')); // the length of a signature
        QNetworkReply *reply
            = manager.post(request,
                           R"(<?xml version="1.0" encoding="UTF-8"?><attendance>)"
                           "<clientTime>2026-11-23T10:00:00</clientTime><lag>1234567890</lag>"
                           "<locationId>1</locationId><transponderId>123456</transponderId>"
                           "</attendance>");
        QObject::connect(reply, &QNetworkReply::finished, &manager, [reply, finish, state] {
            reply->deleteLater();
            if (reply->error() != QNetworkReply::NoError || reply->readAll().isEmpty())
                qFatal("A bare POST has failed.");
            if (--state->pending == 0)
                finish();
            else
                state->next();
        });
    };
    for (int i = 0; i < maxInFlight; ++i)
        state->next();
}

} // namespace

/**
 * Prints the seconds until everything is sent, and the peak memory in megabytes. Without arguments,
 * the kiosk's queue sends its spool. With a URL and a number, a bare manager sends that many
 * requests.
 */
int main(int argc, char *argv[])
{
    prepareEnvironment();
    const QCoreApplication app(argc, argv);
    nameApplication();
    registerMetaTypes();
    const QStringList arguments = QCoreApplication::arguments();

    QElapsedTimer clock;
    const auto finish = [&clock] {
        std::printf("%.4f %.3f\n", static_cast<double>(clock.nsecsElapsed()) / 1e9,
                    peakMegabytes(QStringLiteral("self")));
        QCoreApplication::quit();
    };
    if (arguments.size() > 1) {
        QNetworkAccessManager manager;
        clock.start();
        post(manager, QUrl(arguments.value(1)), arguments.value(2).toInt(), finish);
        return QCoreApplication::exec();
    }
    XNetworkAccessManager manager;
    AttendanceNameCache names;
    AttendanceQueue queue(manager, names, {});
    QObject::connect(&queue, &AttendanceQueue::passFinished, &queue, finish);
    clock.start();
    queue.process();
    return QCoreApplication::exec();
}
