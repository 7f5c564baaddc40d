// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "presence/tallyxservice.h"

#include "base/exceptions.h"
#include "base/json.h"
#include "base/reason.h"
#include "config/config.h"
#include "config/keys.h"
#include "net/accesstoken.h"
#include "net/errortext.h"
#include "net/http.h"
#include "notifications/noticelimits.h"
#include "presence/tallyxlogentity.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUrlQuery>

namespace tallyxservice {

namespace {

    void throwOnNetworkError(const QNetworkReply &reply)
    {
        const QString error = networkError(reply);
        if (!error.isEmpty())
            throw AttendanceWarningException(error, Reason::ofReply(reply));
    }

    [[noreturn]] void throwUnreadable(const QNetworkReply &reply, const QString &message)
    {
        throw AttendanceWarningException(message, Reason::ofReply(reply));
    }

} // namespace

QNetworkReply *getStatus(QNetworkAccessManager &manager, const TallyxLogEntity &record)
{
    const Config *config = Config::instance();
    RequestLimits limits;
    limits.deadline = std::chrono::milliseconds(config->number(keys::tallyxGetStatusTimeout));

    QUrl url = config->tallyxLogUrl();
    QUrlQuery query(url);
    query.addQueryItem(QStringLiteral("transponder"), QString::number(record.transponderId()));
    query.addQueryItem(QStringLiteral("location"), QString::number(record.locationId()));
    url.setQuery(query);
    QNetworkRequest request = http::request(url);
    request.setRawHeader(QByteArrayLiteral("Accept"), QByteArrayLiteral("application/json"));
    return http::get(manager, request, limits);
}

QNetworkReply *postLog(QNetworkAccessManager &manager, const TallyxLogEntity &record,
                       const RequestLimits &limits)
{
    QNetworkRequest request = http::request(Config::instance()->tallyxLogUrl());
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    if (!accesstoken::authorize(request))
        throw AttendanceWarningException(
            QStringLiteral("Authentication unavailable."),
            QCoreApplication::translate("tallyxservice", "Authentication unavailable."));
    return http::post(manager, request, record.toJson().toJson(), limits);
}

QJsonObject readStatus(QNetworkReply &reply)
{
    throwOnNetworkError(reply);
    QJsonParseError error;
    const QJsonDocument document = readJson(reply.readAll(), &error);
    if (error.error != QJsonParseError::NoError)
        throwUnreadable(reply,
                        QStringLiteral("Failed to parse response: %1 %2")
                            .arg(error.errorString(), QString::number(error.offset)));
    if (!document.isObject())
        throwUnreadable(reply, QStringLiteral("Response is not an object."));
    return document.object();
}

QJsonObject readAcknowledgement(QNetworkReply &reply)
{
    throwOnNetworkError(reply);
    const QJsonObject response = readJson(reply.readAll()).object();
    if (response.isEmpty() || response.contains(QLatin1String("error")))
        throw AttendanceWarningException(
            QStringLiteral("Error parsing response."),
            QCoreApplication::translate("tallyxservice",
                                        "The service has not confirmed the booking."));
    return response;
}

QString text(const QJsonObject &response, const char *key)
{
    const QJsonValue value = response.value(QLatin1String(key));
    return value.isString() ? value.toString(QLatin1String("")).left(noticelimits::maxTextLength)
                            : QString();
}

} // namespace tallyxservice
