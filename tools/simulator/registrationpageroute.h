// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

namespace simulator {

class CardHolders;

/**
 * What a phone sees of the registration: the QR code's image and the page that it leads to, where
 * one button stands for the whole log-in and gives the card to RegistrationRoute's known user.
 */
class RegistrationPageRoute : public RouteHandler
{
public:
    static constexpr auto pathPrefix = "/iddb/transponder-registration/"; ///< before "TID/"
    static constexpr auto imageName = "qr.svg"; ///< behind the page's path

    explicit RegistrationPageRoute(CardHolders &holders);

    /// Where the code for the card is drawn, at the address by which the request came.
    [[nodiscard]] static QString imageUrl(const RecordedRequest &request, const QString &tid);

    [[nodiscard]] bool owns(const QByteArray &method, const QString &asked) const override;
    [[nodiscard]] Answer answer(const QString &asked, const RecordedRequest &request) override;
    /// For the image alone.
    [[nodiscard]] Answer spoil(Answer good, Fault fault, const RecordedRequest &request) override;

private:
    [[nodiscard]] Answer page(const QString &tid, quint64 card, bool isPosted);

    CardHolders &m_holders;
};

} // namespace simulator
