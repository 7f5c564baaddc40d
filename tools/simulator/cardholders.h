// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/cardregistration.h"

#include <QVector>

#include <mutex>
#include <optional>

namespace simulator {

/**
 * The holders of the cards 0A1B2C3D to 0A1B2C40 and of every card registered later, shared by all
 * services. All functions can be called from any thread.
 */
class CardHolders
{
public:
    CardHolders() = default;
    Q_DISABLE_COPY_MOVE(CardHolders)

    /// The card number behind @p tid, the eight hexadecimal digits that a reader sends.
    [[nodiscard]] static std::optional<quint64> numberOf(const QString &tid);
    /// Empty for an unassigned card.
    [[nodiscard]] QString nameOf(quint64 card) const;
    /// The services' message for an unassigned card.
    [[nodiscard]] static QString unknownCard(quint64 card);

    /// Assigns a card to its new owner. The first owner of a card keeps it.
    void assign(const CardRegistration &registration);
    [[nodiscard]] QVector<CardRegistration> registrations() const;

private:
    mutable std::mutex m_mutex; ///< protects m_registrations
    QVector<CardRegistration> m_registrations;
};

} // namespace simulator
