// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/kctoken.h"
#include "net/requestlimits.h"
#include "net/tokenanswer.h"

#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QTimer>

class XNetworkAccessManager;

/** The form of a client-credentials grant. */
[[nodiscard]] QByteArray clientCredentialsForm();

/** Posts @p form to the configured token endpoint with the configured client's credentials. */
[[nodiscard]] QNetworkReply *postTokenRequest(QNetworkAccessManager &manager,
                                              const QByteArray &form, const RequestLimits &limits);

/**
 * Obtains an access token by the OAuth2 client-credentials grant (RFC 6749, section 4.4) and keeps
 * it fresh, by its refresh token where the server gives one, else by a new grant.
 *
 * A token that is held is only ever replaced, so that a night of flapping network goes unnoticed.
 * Lives in the configuration worker's thread; grant() and refresh() may be called from any thread.
 */
class KCClientCredentials : public QObject
{
    Q_OBJECT

public:
    /** Asks with the address and credentials of the settings; @p manager is not owned. */
    explicit KCClientCredentials(XNetworkAccessManager *manager, const RequestLimits &limits = {},
                                 QObject *parent = nullptr);

    /** The text of the current access token, empty before the first. */
    [[nodiscard]] QString accessToken() const;

Q_SIGNALS:
    /** The first token has arrived. */
    void accessTokenAvailable();
    void accessTokenChanged(QString token);

public Q_SLOTS:
    /** Asks for a token by the client's credentials, unless such a request is under way. */
    void grant();
    /** Renews the token by the refresh token, or by grant() when there is no usable one. */
    void refresh();

private Q_SLOTS:
    void onGrantReplyFinished();
    void onRefreshReplyFinished();

private:
    [[nodiscard]] QPointer<QNetworkReply> post(const QByteArray &form);
    [[nodiscard]] bool processReply(QPointer<QNetworkReply> &pending);
    void adopt(const TokenAnswer &answer);

    XNetworkAccessManager *m_manager;
    RequestLimits m_limits;
    QTimer *m_renewalTimer;
    QPointer<QNetworkReply> m_grantReply;
    QPointer<QNetworkReply> m_refreshReply;
    QPointer<KCToken> m_accessToken;
    QPointer<KCToken> m_refreshToken;
};
