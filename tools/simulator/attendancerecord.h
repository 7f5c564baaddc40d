// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>

#include <optional>

namespace simulator {

/** One card at one reader, as the events service has logged it. */
struct AttendanceRecord
{
    quint64 transponderId = 0;
    int locationId = 0;
    QDateTime clientTime; ///< when the card was read
    std::optional<qint64> lagMs; ///< how long it waited in the spool; only re-sent ones tell
    QDateTime acceptedAt;
};

} // namespace simulator
