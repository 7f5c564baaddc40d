// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

namespace simulator {

class CardHolders;
class PresenceBook;
class TokenRoute;

/** The presence service's log: books that somebody comes or leaves, and says good day. */
class PresenceBookingRoute : public RouteHandler
{
public:
    /// @param book takes the bookings, those of cards that are nobody's too
    PresenceBookingRoute(const CardHolders &holders, const TokenRoute &tokens, PresenceBook &book);

    [[nodiscard]] bool owns(const QByteArray &method, const QString &asked) const override;
    [[nodiscard]] Answer answer(const QString &asked, const RecordedRequest &request) override;
    [[nodiscard]] Answer spoil(Answer good, Fault fault, const RecordedRequest &request) override;

private:
    const CardHolders &m_holders;
    const TokenRoute &m_tokens;
    PresenceBook &m_book;
};

} // namespace simulator
