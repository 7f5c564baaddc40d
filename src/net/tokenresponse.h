// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>

class QIODevice;

/** A token endpoint's response (RFC 6749, section 5.1, with Keycloak's refresh_expires_in). */
struct TokenResponse
{
    QString accessToken;
    int expiresIn = 0; ///< s
    QString refreshToken; ///< empty if missing, as with current servers
    int refreshExpiresIn = 0; ///< s; 0 if missing
};

/** Reads @p body; throws KCException with a message that contains no part of a token. */
[[nodiscard]] TokenResponse parseTokenResponse(const QByteArray &body);

/**
 * Why the token endpoint refuses, from the body of its @p reply (RFC 6749, section 5.2), as
 * " [code: description]" to append to a failure; empty if the body does not tell.
 */
[[nodiscard]] QString refusalReason(QIODevice &reply);

/** The time after which to renew a token that is valid for @p expiresIn seconds. */
[[nodiscard]] std::chrono::milliseconds renewalInterval(int expiresIn);
