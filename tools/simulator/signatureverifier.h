// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

#include <mutex>

namespace simulator {

/**
 * Judges the token of a signed request: base64 of the time in milliseconds since the epoch (8
 * bytes, little-endian), a nonce (16) and the HMAC-SHA256 over time, body and nonce (32).
 *
 * The keyed hash is made here from the plain one, so that an error in what the kiosk signs with can
 * not hide behind the same error. Can be called from any thread.
 */
class SignatureVerifier
{
public:
    /// What is wrong with the token, or an empty text; a good token is good once.
    [[nodiscard]] QString complaint(const QByteArray &token, const QByteArray &body);

private:
    std::mutex m_mutex; ///< guards the next one
    QSet<QByteArray> m_nonces; ///< all that were ever used
};

} // namespace simulator
