// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

#include <QDeadlineTimer>
#include <QHash>
#include <QSet>

#include <mutex>
#include <optional>

namespace simulator {

/**
 * The identity server's token endpoint: client credentials and refresh tokens, as Keycloak answers
 * them. Knows one client, clientId with clientSecret.
 */
class TokenRoute : public RouteHandler
{
public:
    static constexpr auto path = "/auth/realms/deskhub/protocol/openid-connect/token";
    static constexpr auto clientId = "lumenboard-simulated";
    static constexpr auto clientSecret = "Geheimnis: 42 & mehr";

    [[nodiscard]] bool owns(const QByteArray &method, const QString &path) const override;
    [[nodiscard]] Answer answer(const QString &path, const RecordedRequest &request) override;
    [[nodiscard]] Answer spoil(Answer good, Fault fault, const RecordedRequest &request) override;

    /// Whether the header value carries an access token that was issued here and has not expired.
    [[nodiscard]] bool isAuthorized(const QByteArray &authorization) const;
    /// What a service answers that is for kiosks alone and speaks JSON and German; nothing if the
    /// request has a good token and wants both.
    [[nodiscard]] std::optional<Answer> refusalOf(const RecordedRequest &request) const;

private:
    [[nodiscard]] Answer issue();

    mutable std::mutex m_mutex; ///< guards everything below
    QHash<QByteArray, QDeadlineTimer> m_accessTokens;
    QSet<QString> m_refreshTokens; ///< each is good for one use
};

} // namespace simulator
