// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

/** A fresh nonce of 16 random bytes. */
[[nodiscard]] QByteArray attendanceNonce();

/**
 * The base64 token by which the attendance service checks sender and time of @p data: time stamp
 * (@p msecs since the epoch, 8 bytes, little-endian), @p nonce, and an HMAC-SHA256 over time stamp,
 * data and nonce.
 */
[[nodiscard]] QByteArray attendanceToken(const QByteArray &data, qint64 msecs,
                                         const QByteArray &nonce);
