// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>

#include <optional>

namespace simulator {

/** One card at one reader, as logged by the events service. */
struct AttendanceRecord
{
    quint64 transponderId = 0;
    int locationId = 0;
    QDateTime clientTime; ///< when the card was read
    std::optional<qint64> lagMs; ///< time in the spool; only in re-sent records
    QDateTime acceptedAt;
};

} // namespace simulator
