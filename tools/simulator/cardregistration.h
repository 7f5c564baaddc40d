// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QString>

namespace simulator {

/** One registered card. */
struct CardRegistration
{
    QString tid; ///< as the kiosk sent it
    QString owner;
    bool byPhone = false; ///< on the page behind the QR code
    QDateTime time;
};

} // namespace simulator
