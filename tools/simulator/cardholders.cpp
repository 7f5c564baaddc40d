// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/cardholders.h"

#include "simulator/strictforms.h"

#include <algorithm>
#include <array>

namespace simulator {
namespace {

    constexpr quint64 firstCard = 0x0A1B2C3D;
    constexpr std::array<const char *, 4> holders {
        "Erika Beispiel",
        "Jürgen Großmann-Öztürk",
        "Zoë Łukasiewicz",
        "Dr. Maximiliane Konstanze Freifrau von und zu Hohenmusterstein-Beispielhausen",
    };

} // namespace

std::optional<quint64> CardHolders::numberOf(const QString &tid)
{
    return matches(tid, "[0-9A-Fa-f]{8}") ? std::optional(tid.toULongLong(nullptr, 16))
                                          : std::nullopt;
}

QString CardHolders::nameOf(quint64 card) const
{
    const quint64 index = card - firstCard;
    if (index < holders.size())
        return QString::fromUtf8(holders.at(index));
    const std::lock_guard lock(m_mutex);
    const auto found
        = std::find_if(m_registrations.begin(), m_registrations.end(),
                       [card](const auto &each) { return numberOf(each.tid) == card; });
    return found == m_registrations.end() ? QString() : found->owner;
}

QString CardHolders::unknownCard(quint64 card)
{
    return QStringLiteral("Die Karte %1 ist niemandem zugeordnet.").arg(card);
}

void CardHolders::assign(const CardRegistration &registration)
{
    // nameOf() finds the first entry, so a second owner has no effect.
    const std::lock_guard lock(m_mutex);
    m_registrations.append(registration);
}

QVector<CardRegistration> CardHolders::registrations() const
{
    const std::lock_guard lock(m_mutex);
    return m_registrations;
}

} // namespace simulator
