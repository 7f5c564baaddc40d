// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

namespace simulator {

class CardHolders;
class TokenRoute;

/**
 * The log-in of the registration service: assigns a card by user name and password. There are
 * three accounts: one is locked, one is quick to type on a touch screen.
 */
class RegistrationRoute : public RouteHandler
{
public:
    static constexpr auto userName = "kim";
    static constexpr auto person = "Kim Übungsfrau-Beispiel";
    static constexpr auto lockedUserName = "robin";
    static constexpr auto lockedPerson = "Robin Mustermensch";
    static constexpr auto password = "Größe-42!"; ///< of the first two accounts
    static constexpr auto shortUserName = "mia";
    static constexpr auto shortPerson = "Mia Kurz";
    static constexpr auto shortPassword = "Öl";

    RegistrationRoute(CardHolders &holders, const TokenRoute &tokens);

    [[nodiscard]] bool owns(const QByteArray &method, const QString &asked) const override;
    [[nodiscard]] Response respond(const QString &asked, const RecordedRequest &request) override;
    [[nodiscard]] Response spoil(Response good, Fault fault,
                                 const RecordedRequest &request) override;

private:
    CardHolders &m_holders;
    const TokenRoute &m_tokens;
};

} // namespace simulator
