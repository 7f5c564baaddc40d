// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

#include <functional>

namespace simulator {

class CardHolders;
class TokenRoute;

/** The status query of the registration service: a card's owner, or its QR code. */
class RegistrationStatusRoute : public RouteHandler
{
public:
    static constexpr auto pathPrefix = "/iddb/api/transponder-registration/"; ///< before "TID/"
    using BaseUrl = std::function<QByteArray()>;

    /// @param otherBaseUrl base address of another server, for a hostile QR code
    RegistrationStatusRoute(const CardHolders &holders, const TokenRoute &tokens,
                            BaseUrl otherBaseUrl);

    /// Every method but POST.
    [[nodiscard]] bool owns(const QByteArray &method, const QString &asked) const override;
    [[nodiscard]] Response respond(const QString &asked, const RecordedRequest &request) override;
    [[nodiscard]] Response spoil(Response good, Fault fault,
                                 const RecordedRequest &request) override;

private:
    const CardHolders &m_holders;
    const TokenRoute &m_tokens;
    const BaseUrl m_otherBaseUrl;
};

} // namespace simulator
