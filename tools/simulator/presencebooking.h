// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/enums.h"

#include <QDateTime>

namespace simulator {

/** One card at one screen, as booked by the presence service. */
struct PresenceBooking
{
    quint64 tid = 0;
    PresenceType type = PresenceType::Auto;
    QDateTime time; ///< when the card was read
    int locationId = 0;
    qint64 logDelay = 0; ///< both in milliseconds; negative after a clock change
    qint64 transmissionDelay = 0;
    QDateTime acceptedAt;
};

} // namespace simulator
