// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/registrationstatusroute.h"

#include "simulator/cardholders.h"
#include "simulator/registrationpageroute.h"
#include "simulator/tokenroute.h"

#include <QJsonDocument>

namespace simulator {
namespace {

    constexpr QLatin1String ownedKey("owned");
    constexpr QLatin1String ownerKey("owner");
    constexpr QLatin1String qrCodeKey("qrCode");

} // namespace

RegistrationStatusRoute::RegistrationStatusRoute(const CardHolders &holders,
                                                 const TokenRoute &tokens, BaseUrl otherBaseUrl)
    : m_holders(holders)
    , m_tokens(tokens)
    , m_otherBaseUrl(std::move(otherBaseUrl))
{
}

bool RegistrationStatusRoute::owns(const QByteArray &method, const QString &asked) const
{
    return method != "POST" && asked.startsWith(QLatin1String(pathPrefix));
}

Response RegistrationStatusRoute::respond(const QString &asked, const RecordedRequest &request)
{
    if (request.method != "GET")
        return textResponse(405, QStringLiteral("Use GET to fetch the status"));
    if (const auto refusal = m_tokens.refusalOf(request))
        return *refusal;
    const QString rest = asked.mid(QLatin1String(pathPrefix).size());
    const QString tid = rest.chopped(rest.endsWith(QLatin1Char('/')) ? 1 : 0);
    const auto card = CardHolders::numberOf(tid);
    if (!card || rest == tid)
        return textResponse(404, QStringLiteral("No card at this address"));
    const QString owner = m_holders.nameOf(*card);
    if (!owner.isEmpty())
        return jsonResponse(200, { { ownedKey, true }, { ownerKey, owner } });
    return jsonResponse(
        200, { { ownedKey, false }, { qrCodeKey, RegistrationPageRoute::imageUrl(request, tid) } });
}

Response RegistrationStatusRoute::spoil(Response good, Fault fault,
                                        const RecordedRequest & /*request*/)
{
    const bool hasCode = good.body.contains(qrCodeKey.data());
    good = spoiledJson(std::move(good), fault, R"({"owned":"ja","owner":7,"qrCode":[]})",
                       { ownerKey });
    if (fault == Fault::HostileValues && hasCode) {
        QJsonObject object = QJsonDocument::fromJson(good.body).object();
        object.insert(qrCodeKey, QString::fromLatin1(m_otherBaseUrl() + "/qr.svg"));
        good.body = QJsonDocument(object).toJson(QJsonDocument::Compact);
    }
    return good;
}

} // namespace simulator
