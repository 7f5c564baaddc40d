// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

#include <functional>

namespace simulator {

class CardHolders;
class TokenRoute;

/** The registration service's first answer: whose card it is, or how to register it by phone. */
class RegistrationStatusRoute : public RouteHandler
{
public:
    static constexpr auto pathPrefix = "/iddb/api/transponder-registration/"; ///< before "TID/"
    using Elsewhere = std::function<QByteArray()>;

    /// @param elsewhere the base of another server's addresses, for a hostile QR code
    RegistrationStatusRoute(const CardHolders &holders, const TokenRoute &tokens,
                            Elsewhere elsewhere);

    /// Whatever is not posted.
    [[nodiscard]] bool owns(const QByteArray &method, const QString &asked) const override;
    [[nodiscard]] Answer answer(const QString &asked, const RecordedRequest &request) override;
    [[nodiscard]] Answer spoil(Answer good, Fault fault, const RecordedRequest &request) override;

private:
    const CardHolders &m_holders;
    const TokenRoute &m_tokens;
    const Elsewhere m_elsewhere;
};

} // namespace simulator
