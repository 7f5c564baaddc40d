// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

#include <mutex>

namespace simulator {

/**
 * Checks the token of a signed request: base64 of the time in milliseconds since the epoch (8
 * bytes, little-endian), a nonce (16) and the HMAC-SHA256 over time, body and nonce (32).
 *
 * Computes the HMAC independently of the kiosk's code, so that an error there cannot hide behind
 * the same error here. Can be called from any thread.
 */
class SignatureVerifier
{
public:
    /// What is wrong with the token, or an empty text. A token is valid once.
    [[nodiscard]] QString complaint(const QByteArray &token, const QByteArray &body);

private:
    std::mutex m_mutex; ///< protects m_nonces
    QSet<QByteArray> m_nonces; ///< of all accepted tokens
};

} // namespace simulator
