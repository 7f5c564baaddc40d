// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/presencebooking.h"

#include <QHash>
#include <QVector>

#include <mutex>
#include <optional>

namespace simulator {

/** Who is present, and all bookings. All functions can be called from any thread. */
class PresenceBook
{
public:
    PresenceBook() = default;
    Q_DISABLE_COPY_MOVE(PresenceBook)

    /// All bookings in order of arrival, repeated ones included.
    [[nodiscard]] QVector<PresenceBooking> bookings() const;
    /// When the card's holder came; nothing if absent. Initially everyone is absent.
    [[nodiscard]] std::optional<QDateTime> presentSince(quint64 card) const;
    void setPresent(quint64 card, bool present);

    /// Whether the booking means coming. Without a direction it toggles the presence.
    [[nodiscard]] bool isArrival(const PresenceBooking &booking) const;
    void enter(const PresenceBooking &booking);

private:
    void set(quint64 card, bool present, const QDateTime &time);

    mutable std::mutex m_mutex; ///< protects everything below
    QHash<quint64, QDateTime> m_presentSince;
    QVector<PresenceBooking> m_bookings;
};

} // namespace simulator
