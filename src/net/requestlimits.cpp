// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/requestlimits.h"

#include <QDebug>
#include <QNetworkReply>
#include <QTimer>

namespace {

void giveUp(QNetworkReply *reply, const char *reason)
{
    if (reply->isFinished())
        return;
    qWarning() << "Giving up request for" << reply->url() << reason;
    reply->abort();
}

} // namespace

QNetworkRequest limitedRequest(const QUrl &url, const RequestLimits &limits)
{
    QNetworkRequest request(url);
    applyLimits(request, limits);
    return request;
}

void applyLimits(QNetworkRequest &request, const RequestLimits &limits)
{
    request.setTransferTimeout(static_cast<int>(limits.silence.count()));
    request.setRawHeader(QByteArrayLiteral("Accept-Encoding"), QByteArrayLiteral("identity"));
}

void enforceLimits(QNetworkReply *reply, const RequestLimits &limits)
{
    auto *deadline = new QTimer(reply);
    deadline->setSingleShot(true);
    QObject::connect(deadline, &QTimer::timeout, reply,
                     [reply] { giveUp(reply, "after its time limit"); });
    QObject::connect(reply, &QNetworkReply::finished, deadline, &QTimer::stop);
    deadline->start(limits.deadline);

    const qint64 most = limits.bodyBytes;
    // Also while this thread is busy nothing piles up without bound.
    reply->setReadBufferSize(most + 1);
    const auto checkSize = [reply, most](qint64 bytes) {
        if (bytes > most)
            giveUp(reply, "since its body is too large");
    };
    QObject::connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, checkSize] {
        checkSize(reply->header(QNetworkRequest::ContentLengthHeader).toLongLong());
    });
    // Progress is reported only now and then; what waits to be read tells of a flood in between.
    QObject::connect(reply, &QNetworkReply::readyRead, reply,
                     [reply, checkSize] { checkSize(reply->bytesAvailable()); });
    QObject::connect(reply, &QNetworkReply::downloadProgress, reply,
                     [checkSize](qint64 received, qint64) { checkSize(received); });
}
