// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

namespace simulator {

class CardHolders;
class PresenceBook;

/** The presence service's question and answer: is the holder of a card there, and who is it? */
class PresenceStatusRoute : public RouteHandler
{
public:
    static constexpr auto path = "/rs/log/v2"; ///< bookings are posted to the same

    PresenceStatusRoute(const CardHolders &holders, const PresenceBook &book);

    /// Whatever is not posted: a method that the service does not know is refused here.
    [[nodiscard]] bool owns(const QByteArray &method, const QString &asked) const override;
    [[nodiscard]] Answer answer(const QString &asked, const RecordedRequest &request) override;
    [[nodiscard]] Answer spoil(Answer good, Fault fault, const RecordedRequest &request) override;

private:
    const CardHolders &m_holders;
    const PresenceBook &m_book;
};

} // namespace simulator
