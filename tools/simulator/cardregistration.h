// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QString>

namespace simulator {

/** One card that somebody has registered for themselves. */
struct CardRegistration
{
    QString tid; ///< as the kiosk sent it
    QString owner;
    bool byPhone = false; ///< on the page that the QR code leads to
    QDateTime time;
};

} // namespace simulator
