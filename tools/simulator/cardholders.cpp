// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/cardholders.h"

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

QString CardHolders::nameOf(quint64 card) const
{
    const quint64 index = card - firstCard;
    return index < holders.size() ? QString::fromUtf8(holders.at(index)) : QString();
}

QString CardHolders::unknownCard(quint64 card)
{
    return QStringLiteral("Die Karte %1 ist niemandem zugeordnet.").arg(card);
}

} // namespace simulator
