// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

namespace simulator {

class CardHolders;
class PresenceBook;
class TokenRoute;

/** The log of the presence service: books coming and leaving, and greets the person. */
class PresenceBookingRoute : public RouteHandler
{
public:
    /// @param book receives the bookings, also of unassigned cards
    PresenceBookingRoute(const CardHolders &holders, const TokenRoute &tokens, PresenceBook &book);

    [[nodiscard]] bool owns(const QByteArray &method, const QString &asked) const override;
    [[nodiscard]] Response respond(const QString &asked, const RecordedRequest &request) override;
    [[nodiscard]] Response spoil(Response good, Fault fault,
                                 const RecordedRequest &request) override;

private:
    const CardHolders &m_holders;
    const TokenRoute &m_tokens;
    PresenceBook &m_book;
};

} // namespace simulator
