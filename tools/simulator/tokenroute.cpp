// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/tokenroute.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrlQuery>
#include <QUuid>

namespace simulator {

using namespace std::chrono_literals;

namespace {

    constexpr auto formType = "application/x-www-form-urlencoded";
    constexpr QLatin1String accessTokenKey("access_token");
    constexpr QLatin1String expiryKey("expires_in");
    constexpr std::chrono::seconds expiry = 300s;
    constexpr std::chrono::seconds tinyExpiry = 1s;

    Response refusal(int status, const char *code)
    {
        return jsonResponse(status, { { QStringLiteral("error"), QLatin1String(code) } });
    }

    bool hasCredentials(const RecordedRequest &request)
    {
        const QByteArray expected
            = QByteArray(TokenRoute::clientId) + ':' + TokenRoute::clientSecret;
        return request.headers.value("authorization") == "Basic " + expected.toBase64();
    }

    QString formValue(const RecordedRequest &request, const char *key)
    {
        // A form encodes a blank as a plus sign, and a plus sign as %2B.
        const QUrlQuery form(
            QString::fromLatin1(request.body).replace(QLatin1Char('+'), QLatin1String("%20")));
        return form.queryItemValue(QLatin1String(key), QUrl::FullyDecoded);
    }

    QByteArray randomText()
    {
        return QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
    }

} // namespace

bool TokenRoute::owns(const QByteArray & /*method*/, const QString &asked) const
{
    return asked == QLatin1String(path);
}

Response TokenRoute::respond(const QString & /*path*/, const RecordedRequest &request)
{
    if (request.method != "POST")
        return refusal(405, "method_not_allowed");
    if (request.headers.value("content-type").split(';').first() != formType)
        return refusal(415, "unsupported_media_type");
    if (!hasCredentials(request))
        return refusal(401, "invalid_client");

    const QString grant = formValue(request, "grant_type");
    if (grant == QLatin1String("client_credentials"))
        return issue();
    if (grant != QLatin1String("refresh_token"))
        return refusal(400, "unsupported_grant_type");
    {
        const std::lock_guard lock(m_mutex);
        if (!m_refreshTokens.remove(formValue(request, "refresh_token")))
            return refusal(400, "invalid_grant");
    }
    return issue();
}

Response TokenRoute::spoil(Response good, Fault fault, const RecordedRequest &request)
{
    if (fault == Fault::ExpiredRefreshToken)
        return formValue(request, "grant_type") == QLatin1String("refresh_token")
            ? refusal(400, "invalid_grant")
            : good;

    QJsonObject response = QJsonDocument::fromJson(good.body).object();
    if (fault == Fault::TinyExpiry) {
        response.insert(expiryKey, qint64(tinyExpiry.count()));
        const std::lock_guard lock(m_mutex);
        m_accessTokens.insert(response.value(accessTokenKey).toString().toLatin1(),
                              QDeadlineTimer(tinyExpiry));
    } else if (fault == Fault::InvalidValue) {
        response.insert(expiryKey, QStringLiteral("bald"));
    } else if (fault == Fault::NoRefreshToken) {
        response.remove(QStringLiteral("refresh_token"));
        response.insert(QStringLiteral("refresh_expires_in"), 0);
    } else {
        return good;
    }
    return jsonResponse(good.status, response);
}

bool TokenRoute::isAuthorized(const QByteArray &authorization) const
{
    const QByteArray scheme = "Bearer ";
    if (!authorization.startsWith(scheme))
        return false;
    const QByteArray text = authorization.mid(scheme.size());
    if (m_introspection)
        return m_introspection->isActive(text);
    const std::lock_guard lock(m_mutex);
    const auto token = m_accessTokens.constFind(text);
    return token != m_accessTokens.constEnd() && !token->hasExpired();
}

std::optional<Response> TokenRoute::refusalOf(const RecordedRequest &request) const
{
    if (!isAuthorized(request.headers.value("authorization")))
        return textResponse(401, QStringLiteral("Unknown or expired token"));
    if (request.headers.value("accept") != "application/json")
        return textResponse(406, QStringLiteral("The Accept header must be application/json"));
    if (!request.headers.value("accept-language").startsWith("de"))
        return textResponse(406, QStringLiteral("The Accept-Language header must start with de"));
    return std::nullopt;
}

Response TokenRoute::issue()
{
    const QByteArray access = "access." + randomText();
    // With characters that a form must escape.
    const QString refresh = QStringLiteral("refresh+&=%/") + QString::fromLatin1(randomText());
    const std::lock_guard lock(m_mutex);
    m_accessTokens.insert(access, QDeadlineTimer(expiry));
    m_refreshTokens.insert(refresh);
    return jsonResponse(200,
                        { { accessTokenKey, QString::fromLatin1(access) },
                          { expiryKey, qint64(expiry.count()) },
                          { QStringLiteral("refresh_token"), refresh },
                          { QStringLiteral("refresh_expires_in"), 1800 },
                          { QStringLiteral("token_type"), QStringLiteral("Bearer") },
                          { QStringLiteral("not-before-policy"), 0 },
                          { QStringLiteral("scope"), QStringLiteral("profile email") } });
}

} // namespace simulator
