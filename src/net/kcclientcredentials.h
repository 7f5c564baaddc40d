// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/kctoken.h"
#include "net/requestlimits.h"
#include "net/tokenresponse.h"

#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QTimer>

class XNetworkAccessManager;

/** The form body of a client-credentials grant. */
[[nodiscard]] QByteArray clientCredentialsForm();

/** Posts @p form to the token endpoint with the client credentials of the settings. */
[[nodiscard]] QNetworkReply *postTokenRequest(QNetworkAccessManager &manager,
                                              const QByteArray &form, const RequestLimits &limits);

/**
 * Obtains an access token by the OAuth2 client-credentials grant (RFC 6749, section 4.4) and keeps
 * it fresh: with the refresh token if the server gives one, else by a new grant.
 *
 * A failed renewal keeps the current token, so a short network failure goes unnoticed.
 * Lives in the configuration worker's thread; grant() and refresh() may be called from any thread.
 */
class KCClientCredentials : public QObject
{
    Q_OBJECT

public:
    /** Uses the token endpoint and credentials of the settings; does not own @p manager. */
    explicit KCClientCredentials(XNetworkAccessManager *manager, const RequestLimits &limits = {},
                                 QObject *parent = nullptr);

    /** The current access token; empty before the first. */
    [[nodiscard]] QString accessToken() const;

Q_SIGNALS:
    /** The first token has arrived. */
    void accessTokenAvailable();
    void accessTokenChanged(QString token);
    /** A token has arrived; @p grant is the type of grant (RFC 6749) that brought it. */
    void tokenObtained(QDateTime validUntil, QString grant);
    /** None has; @p reason in a few words without a secret. */
    void tokenFailed(QString reason);

public Q_SLOTS:
    /** Requests a token with the client credentials, unless such a request is pending. */
    void grant();
    /** Renews the token with the refresh token, or by grant() if that is missing or expired. */
    void refresh();

private Q_SLOTS:
    void onGrantReplyFinished();
    void onRefreshReplyFinished();

private:
    [[nodiscard]] QPointer<QNetworkReply> post(const QByteArray &form);
    [[nodiscard]] bool processReply(QPointer<QNetworkReply> &pending, const QString &grant);
    void storeTokens(const TokenResponse &response, const QString &grant);

    XNetworkAccessManager *m_manager;
    RequestLimits m_limits;
    QTimer *m_renewalTimer;
    QPointer<QNetworkReply> m_grantReply;
    QPointer<QNetworkReply> m_refreshReply;
    QPointer<KCToken> m_accessToken;
    QPointer<KCToken> m_refreshToken;
};
