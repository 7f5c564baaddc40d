// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

namespace simulator {

class CardHolders;
class PresenceBook;

/** The status query of the presence service: who holds a card, and are they present? */
class PresenceStatusRoute : public RouteHandler
{
public:
    static constexpr auto path = "/rs/log/v2"; ///< also the path for bookings

    PresenceStatusRoute(const CardHolders &holders, const PresenceBook &book);

    /// Every method but POST; respond() refuses the unknown ones.
    [[nodiscard]] bool owns(const QByteArray &method, const QString &asked) const override;
    [[nodiscard]] Response respond(const QString &asked, const RecordedRequest &request) override;
    [[nodiscard]] Response spoil(Response good, Fault fault,
                                 const RecordedRequest &request) override;

private:
    const CardHolders &m_holders;
    const PresenceBook &m_book;
};

} // namespace simulator
