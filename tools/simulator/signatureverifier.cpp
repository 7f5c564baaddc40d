// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/signatureverifier.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QtEndian>

#include <algorithm>
#include <chrono>

namespace simulator {

using namespace std::chrono_literals;

namespace {

    constexpr int timeBytes = 8;
    constexpr int nonceBytes = 16;
    constexpr int hashBytes = 32;
    constexpr int hashBlockBytes = 64;
    constexpr std::chrono::milliseconds maxAge = 5min;
    constexpr auto secret = "MDEyMzQ1Njc4OWFiY2RlZjAxMjM0NTY3ODlhYmNkZWY=";

    /// HMAC-SHA256 as defined in RFC 2104.
    QByteArray keyedHash(const QByteArray &message)
    {
        const QByteArray key = QByteArray::fromBase64(secret).leftJustified(hashBlockBytes, '\0');
        const auto hash = [&key](int pad, const QByteArray &text) {
            QByteArray block = key;
            std::for_each(block.begin(), block.end(),
                          [pad](char &byte) { byte = char(byte ^ pad); });
            return QCryptographicHash::hash(block + text, QCryptographicHash::Sha256);
        };
        return hash(0x5c, hash(0x36, message));
    }

} // namespace

QString SignatureVerifier::complaint(const QByteArray &token, const QByteArray &body)
{
    const QByteArray bytes = QByteArray::fromBase64(token);
    if (bytes.size() != timeBytes + nonceBytes + hashBytes || bytes.toBase64() != token)
        return QStringLiteral("The token is not the base64 of 56 bytes");

    const QByteArray time = bytes.left(timeBytes);
    const QByteArray nonce = bytes.mid(timeBytes, nonceBytes);
    if (keyedHash(time + body + nonce) != bytes.right(hashBytes))
        return QStringLiteral("The token's hash does not match the document");

    const std::chrono::milliseconds age(QDateTime::currentMSecsSinceEpoch()
                                        - qFromLittleEndian<qint64>(time.constData()));
    if (age > maxAge || age < -maxAge)
        return QStringLiteral("The token is %1 ms old").arg(age.count());

    const std::lock_guard lock(m_mutex);
    if (m_nonces.contains(nonce))
        return QStringLiteral("The token has been used before");
    m_nonces.insert(nonce);
    return {};
}

} // namespace simulator
