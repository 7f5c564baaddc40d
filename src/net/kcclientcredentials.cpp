// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/kcclientcredentials.h"

#include "base/exceptions.h"
#include "config/config.h"
#include "net/errortext.h"
#include "net/http.h"
#include "net/xnetworkaccessmanager.h"

#include <QDebug>
#include <QNetworkRequest>
#include <QThread>
#include <QUrl>

#include <utility>

using namespace std::chrono_literals;

QByteArray clientCredentialsForm()
{
    return QByteArrayLiteral("grant_type=client_credentials");
}

QNetworkReply *postTokenRequest(QNetworkAccessManager &manager, const QByteArray &form,
                                const RequestLimits &limits)
{
    const Config *config = Config::instance();
    QNetworkRequest request = http::request(config->keycloakUrl());
    request.setHeader(QNetworkRequest::ContentTypeHeader,
                      QStringLiteral("application/x-www-form-urlencoded"));
    const QString credentials
        = config->keycloakClientId() + QLatin1Char(':') + config->keycloakClientSecret();
    request.setRawHeader(QByteArrayLiteral("Authorization"),
                         QByteArrayLiteral("Basic ") + credentials.toLocal8Bit().toBase64());
    return http::post(manager, request, form, limits);
}

KCClientCredentials::KCClientCredentials(XNetworkAccessManager *manager,
                                         const RequestLimits &limits, QObject *parent)
    : QObject(parent)
    , m_manager(manager)
    , m_limits(limits)
    , m_renewalTimer(new QTimer(this))
{
    m_renewalTimer->setObjectName(QStringLiteral("renewal"));
    connect(m_renewalTimer, &QTimer::timeout, this, &KCClientCredentials::refresh);
    // In time for the renewal after this one: the secret of a screen may have been changed.
    connect(m_renewalTimer, &QTimer::timeout, Config::instance(), &Config::reload);
}

QString KCClientCredentials::accessToken() const
{
    return m_accessToken ? m_accessToken->text() : QString();
}

void KCClientCredentials::grant()
{
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(this, "grant", Qt::QueuedConnection);
        return;
    }
    if (m_grantReply) {
        qDebug() << "KC/grant: request in progress.";
        return;
    }
    m_grantReply = post(clientCredentialsForm());
    connect(m_grantReply, &QNetworkReply::finished, this,
            &KCClientCredentials::onGrantReplyFinished);
}

void KCClientCredentials::refresh()
{
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(this, "refresh", Qt::QueuedConnection);
        return;
    }
    if (m_refreshReply) {
        qDebug() << "KC/refresh: request in progress.";
        return;
    }
    if (!m_refreshToken || m_refreshToken->isExpired(QDateTime::currentDateTimeUtc())) {
        // No warning: some servers give no refresh token.
        qDebug() << "KC: refresh token is unavailable or has expired. Calling grant().";
        grant();
        return;
    }
    m_refreshReply = post(QByteArrayLiteral("grant_type=refresh_token&refresh_token=")
                          + QUrl::toPercentEncoding(m_refreshToken->text()));
    connect(m_refreshReply, &QNetworkReply::finished, this,
            &KCClientCredentials::onRefreshReplyFinished);
}

void KCClientCredentials::onGrantReplyFinished()
{
    if (processReply(m_grantReply, QStringLiteral("client_credentials")))
        return;
    qWarning() << "Grant failed, retrying in 60s.";
    m_renewalTimer->start(60s);
}

void KCClientCredentials::onRefreshReplyFinished()
{
    if (processReply(m_refreshReply, QStringLiteral("refresh_token")))
        return;
    qWarning() << "Refresh failed, calling grant().";
    grant();
}

QPointer<QNetworkReply> KCClientCredentials::post(const QByteArray &form)
{
    QNetworkReply *reply = postTokenRequest(*m_manager, form, m_limits);
    reply->setParent(this);
    return reply;
}

/** Consumes the pending reply and stores its tokens; false if it has none. */
bool KCClientCredentials::processReply(QPointer<QNetworkReply> &pending, const QString &grant)
{
    const QPointer<QNetworkReply> reply = std::exchange(pending, {});
    if (!reply) {
        qWarning() << "No current reply.";
        return false;
    }
    reply->deleteLater();
    try {
        if (reply->error() != QNetworkReply::NoError)
            throw KCException(QStringLiteral("Network or HTTP error: %1")
                                  .arg(errorText(*reply) + refusalReason(*reply)));
        storeTokens(parseTokenResponse(reply->readAll()), grant);
    } catch (const std::exception &e) {
        qWarning() << "KC: failed to process reply:" << e.what();
        const QString reason = briefError(*reply);
        Q_EMIT tokenFailed(reason.isEmpty() ? QStringLiteral("unreadable response") : reason);
        return false;
    }
    return true;
}

void KCClientCredentials::storeTokens(const TokenResponse &response, const QString &grant)
{
    const bool isFirst = !m_accessToken;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (m_accessToken)
        m_accessToken->deleteLater();
    if (m_refreshToken)
        m_refreshToken->deleteLater();
    m_accessToken = new KCToken(response.accessToken, response.expiresIn, now, this);
    m_refreshToken = response.refreshToken.isEmpty()
        ? nullptr
        : new KCToken(response.refreshToken, response.refreshExpiresIn, now, this);

    const std::chrono::milliseconds interval = renewalInterval(response.expiresIn);
    m_renewalTimer->start(interval);
    qDebug().noquote() << QStringLiteral("Access token aquired. Validity: %1; Timer interval: %2")
                              .arg(response.expiresIn)
                              .arg(interval.count());
    if (isFirst)
        Q_EMIT accessTokenAvailable();
    Q_EMIT accessTokenChanged(response.accessToken);
    Q_EMIT tokenObtained(now.addSecs(response.expiresIn), grant);
}
