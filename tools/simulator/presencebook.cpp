// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/presencebook.h"

namespace simulator {

QVector<PresenceBooking> PresenceBook::bookings() const
{
    const std::lock_guard lock(m_mutex);
    return m_bookings;
}

std::optional<QDateTime> PresenceBook::presentSince(quint64 card) const
{
    const std::lock_guard lock(m_mutex);
    const auto since = m_presentSince.constFind(card);
    return since == m_presentSince.constEnd() ? std::nullopt : std::optional(*since);
}

void PresenceBook::setPresent(quint64 card, bool present)
{
    const std::lock_guard lock(m_mutex);
    set(card, present, QDateTime::currentDateTime());
}

bool PresenceBook::isArrival(const PresenceBooking &booking) const
{
    const bool hasDirection = booking.type == PresenceType::In || booking.type == PresenceType::Out;
    return hasDirection ? booking.type == PresenceType::In : !presentSince(booking.tid);
}

void PresenceBook::enter(const PresenceBooking &booking)
{
    const bool arrival = isArrival(booking);
    const std::lock_guard lock(m_mutex);
    set(booking.tid, arrival, booking.time);
    m_bookings.append(booking);
}

void PresenceBook::set(quint64 card, bool present, const QDateTime &time)
{
    if (present)
        m_presentSince.insert(card, time);
    else
        m_presentSince.remove(card);
}

} // namespace simulator
