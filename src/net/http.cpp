// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/http.h"

#include "net/headfilter.h"
#include "net/headlimit.h"
#include "net/webaddress.h"

#include <QDebug>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

namespace http {

namespace {

    const QByteArray acceptEncoding = QByteArrayLiteral("Accept-Encoding");
    const QByteArray identity = QByteArrayLiteral("identity");

    void giveUp(QNetworkReply *reply, const char *reason)
    {
        if (reply->isFinished())
            return;
        qWarning() << "Giving up request for" << reply->url() << reason;
        reply->abort();
    }

    /** Keeps Qt from opening files: it fails for a scheme that it does not know. */
    QNetworkRequest webOnly(QNetworkRequest request)
    {
        QUrl url = request.url();
        if (isWebAddress(url))
            return request;
        url.setScheme(QLatin1String("refused-") + url.scheme());
        request.setUrl(url);
        return request;
    }

    void limitTime(QNetworkReply *reply, std::chrono::milliseconds deadline)
    {
        auto *timer = new QTimer(reply);
        timer->setSingleShot(true);
        QObject::connect(timer, &QTimer::timeout, reply,
                         [reply] { giveUp(reply, "after its time limit"); });
        QObject::connect(reply, &QNetworkReply::finished, timer, &QTimer::stop);
        timer->start(deadline);
    }

    void limitBody(QNetworkReply *reply, qint64 maxBytes)
    {
        // Bounds what Qt buffers while this thread is busy.
        reply->setReadBufferSize(maxBytes + 1);
        const auto checkSize = [reply, maxBytes](qint64 bytes) {
            if (bytes > maxBytes)
                giveUp(reply, "since its body is too large");
        };
        QObject::connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, checkSize] {
            checkSize(reply->header(QNetworkRequest::ContentLengthHeader).toLongLong());
        });
        // Qt throttles progress signals, so also check the unread bytes between two of them.
        QObject::connect(reply, &QNetworkReply::readyRead, reply,
                         [reply, checkSize] { checkSize(reply->bytesAvailable()); });
        QObject::connect(reply, &QNetworkReply::downloadProgress, reply,
                         [checkSize](qint64 received, qint64) { checkSize(received); });
    }

} // namespace

QNetworkRequest request(const QUrl &url)
{
    QNetworkRequest request(url);
    request.setRawHeader(acceptEncoding, identity);
    return request;
}

QNetworkReply *get(QNetworkAccessManager &manager, const QNetworkRequest &request,
                   const RequestLimits &limits)
{
    return send(webOnly(request), limits,
                [&](const QNetworkRequest &limited) { return manager.get(limited); });
}

QNetworkReply *post(QNetworkAccessManager &manager, const QNetworkRequest &request,
                    const QByteArray &body, const RequestLimits &limits)
{
    return send(webOnly(request), limits,
                [&](const QNetworkRequest &limited) { return manager.post(limited, body); });
}

QNetworkReply *send(QNetworkRequest request, const RequestLimits &limits,
                    const Transport &transport)
{
    request.setTransferTimeout(static_cast<int>(limits.transferTimeout.count()));
    if (request.rawHeader(acceptEncoding) != identity) // setting it again would move it to the end
        request.setRawHeader(acceptEncoding, identity);
    QNetworkReply *reply = transport(request);
    limitTime(reply, limits.deadline);
    limitBody(reply, limits.maxBodyBytes);
    filterHead(reply);
    limitHead(reply);
    return reply;
}

} // namespace http
