// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace simulator {

/** The people who hold the cards 0A1B2C3D to 0A1B2C40; all services know the same ones. */
class CardHolders
{
public:
    /// Empty for a card that is nobody's.
    [[nodiscard]] QString nameOf(quint64 card) const;
    /// What a service tells whoever holds a card that is nobody's.
    [[nodiscard]] static QString unknownCard(quint64 card);
};

} // namespace simulator
