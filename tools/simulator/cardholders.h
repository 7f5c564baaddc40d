// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/cardregistration.h"

#include <QVector>

#include <mutex>
#include <optional>

namespace simulator {

/**
 * The people who hold the cards 0A1B2C3D to 0A1B2C40, and whoever registers another one. All
 * services know the same ones. All functions can be called from any thread.
 */
class CardHolders
{
public:
    CardHolders() = default;
    Q_DISABLE_COPY_MOVE(CardHolders)

    /// The number of a card as a reader writes it, in eight hexadecimal digits.
    [[nodiscard]] static std::optional<quint64> numberOf(const QString &tid);
    /// Empty for a card that is nobody's.
    [[nodiscard]] QString nameOf(quint64 card) const;
    /// What a service tells whoever holds a card that is nobody's.
    [[nodiscard]] static QString unknownCard(quint64 card);

    /// Gives a card to its new owner; one that somebody holds stays theirs.
    void assign(const CardRegistration &registration);
    [[nodiscard]] QVector<CardRegistration> registrations() const;

private:
    mutable std::mutex m_mutex; ///< guards the next one
    QVector<CardRegistration> m_registrations;
};

} // namespace simulator
