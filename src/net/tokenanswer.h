// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>

/** What the token endpoint answers (RFC 6749, section 5.1, with Keycloak's refresh_expires_in). */
struct TokenAnswer
{
    QString accessToken;
    int expiresIn = 0; ///< s
    QString refreshToken; ///< empty: none was given, as today's servers do for client credentials
    int refreshExpiresIn = 0; ///< s; 0 with a missing key, too
};

/** Reads @p body; throws KCException with a message that holds nothing of a token. */
[[nodiscard]] TokenAnswer parseTokenAnswer(const QByteArray &body);

/** How long to wait before a token that is valid for @p expiresIn seconds is renewed. */
[[nodiscard]] std::chrono::milliseconds renewalInterval(int expiresIn);
