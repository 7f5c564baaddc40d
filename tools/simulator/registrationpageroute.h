// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

namespace simulator {

class CardHolders;

/**
 * Registration by phone: the image of the QR code and the page behind it. One button on the page
 * replaces the log-in and assigns the card to RegistrationRoute's known user.
 */
class RegistrationPageRoute : public RouteHandler
{
public:
    static constexpr auto pathPrefix = "/iddb/transponder-registration/"; ///< before "TID/"
    static constexpr auto imageName = "qr.svg"; ///< below the page's path

    explicit RegistrationPageRoute(CardHolders &holders);

    /// Address of the card's QR code, on the host that the request named.
    [[nodiscard]] static QString imageUrl(const RecordedRequest &request, const QString &tid);

    [[nodiscard]] bool owns(const QByteArray &method, const QString &asked) const override;
    [[nodiscard]] Response respond(const QString &asked, const RecordedRequest &request) override;
    /// Spoils the image only.
    [[nodiscard]] Response spoil(Response good, Fault fault,
                                 const RecordedRequest &request) override;

private:
    [[nodiscard]] Response page(const QString &tid, quint64 card, bool isPosted);

    CardHolders &m_holders;
};

} // namespace simulator
