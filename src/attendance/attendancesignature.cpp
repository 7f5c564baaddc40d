// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "attendance/attendancesignature.h"

#include <QMessageAuthenticationCode>
#include <QtEndian>

#include <random>

namespace {

const QByteArray s_sharedSecret
    = QByteArray::fromBase64("MDEyMzQ1Njc4OWFiY2RlZjAxMjM0NTY3ODlhYmNkZWY=");

template <typename Integer> QByteArray littleEndian(Integer number)
{
    QByteArray bytes(sizeof number, Qt::Uninitialized);
    qToLittleEndian(number, bytes.data());
    return bytes;
}

} // namespace

QByteArray attendanceNonce()
{
    // Static, because its constructor queries the processor, which is slow in a virtual machine.
    static thread_local std::random_device device("default");
    std::mt19937_64 generator(device());
    const auto first = static_cast<quint64>(generator());
    const auto second = static_cast<quint64>(generator());
    return littleEndian(first) + littleEndian(second);
}

QByteArray attendanceToken(const QByteArray &data, qint64 msecs, const QByteArray &nonce)
{
    const QByteArray timestamp = littleEndian(msecs);
    QMessageAuthenticationCode code(QCryptographicHash::Sha256, s_sharedSecret);
    code.addData(timestamp);
    code.addData(data);
    code.addData(nonce);
    return (timestamp + nonce + code.result()).toBase64();
}
