// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"
#include "simulator/tokenintrospection.h"

#include <QDeadlineTimer>
#include <QHash>
#include <QSet>

#include <mutex>
#include <optional>

namespace simulator {

/**
 * The token endpoint of the identity server: client credentials and refresh tokens. Knows one
 * client, clientId with clientSecret.
 */
class TokenRoute : public RouteHandler
{
public:
    static constexpr auto path = "/auth/realms/deskhub/protocol/openid-connect/token";
    static constexpr auto clientId = "lumenboard-simulated";
    static constexpr auto clientSecret = "Geheimnis: 42 & mehr";

    [[nodiscard]] bool owns(const QByteArray &method, const QString &path) const override;
    [[nodiscard]] Response respond(const QString &path, const RecordedRequest &request) override;
    [[nodiscard]] Response spoil(Response good, Fault fault,
                                 const RecordedRequest &request) override;

    /// From now on the access tokens are those of another server. Call it before the start.
    void setIntrospection(const QUrl &endpoint) { m_introspection.emplace(endpoint); }
    /// Whether the header value holds a valid access token.
    [[nodiscard]] bool isAuthorized(const QByteArray &authorization) const;
    /// The refusal of a service that requires a token and serves only German JSON. Nothing if the
    /// request meets these conditions.
    [[nodiscard]] std::optional<Response> refusalOf(const RecordedRequest &request) const;

private:
    [[nodiscard]] Response issue();

    std::optional<TokenIntrospection> m_introspection;
    mutable std::mutex m_mutex; ///< protects everything below
    QHash<QByteArray, QDeadlineTimer> m_accessTokens;
    QSet<QString> m_refreshTokens; ///< each is valid once
};

} // namespace simulator
