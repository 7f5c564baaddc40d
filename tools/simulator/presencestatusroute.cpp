// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/presencestatusroute.h"

#include "simulator/cardholders.h"
#include "simulator/presencebook.h"
#include "simulator/strictforms.h"

#include <QUrlQuery>

namespace simulator {
namespace {

    constexpr auto queryMark = QLatin1Char('?');

    /// Reads the card from the query. Returns what is wrong with the query, or an empty text.
    QString read(const QString &query, quint64 *card)
    {
        const QUrlQuery items(query);
        const QString transponder = items.queryItemValue(QStringLiteral("transponder"));
        const QString location = items.queryItemValue(QStringLiteral("location"));
        if (items.queryItems().size() != 2 || transponder.isEmpty() || location.isEmpty())
            return QStringLiteral("Expected exactly one transponder and one location");
        bool isCard = false;
        bool isLocation = false;
        *card = transponder.toULongLong(&isCard);
        (void)location.toInt(&isLocation);
        if (!isCard || !matches(transponder, "\\d+"))
            return QStringLiteral("Not a transponder number: %1").arg(transponder);
        if (!isLocation || !matches(location, "-?\\d+"))
            return QStringLiteral("Not a location number: %1").arg(location);
        return {};
    }

} // namespace

PresenceStatusRoute::PresenceStatusRoute(const CardHolders &holders, const PresenceBook &book)
    : m_holders(holders)
    , m_book(book)
{
}

bool PresenceStatusRoute::owns(const QByteArray &method, const QString &asked) const
{
    return method != "POST" && asked.section(queryMark, 0, 0) == QLatin1String(path);
}

Response PresenceStatusRoute::respond(const QString &asked, const RecordedRequest &request)
{
    if (request.method != "GET")
        return textResponse(405, QStringLiteral("Use GET for the status and POST for a booking"));
    if (request.headers.values("accept") != QList<QByteArray> { "application/json" })
        return textResponse(406, QStringLiteral("The Accept header must be application/json"));
    // A client must not send a token that the service does not need.
    if (request.headers.contains("authorization"))
        return textResponse(400, QStringLiteral("The status query takes no token"));
    quint64 card = 0;
    const QString complaint = read(asked.section(queryMark, 1), &card);
    if (!complaint.isEmpty())
        return textResponse(400, complaint);

    const auto messageKey = QStringLiteral("message");
    const QString name = m_holders.nameOf(card);
    if (name.isEmpty())
        return jsonResponse(200, { { messageKey, CardHolders::unknownCard(card) } });
    const auto since = m_book.presentSince(card);
    return jsonResponse(200,
                        { { QStringLiteral("name"), name },
                          { QStringLiteral("present"), since.has_value() },
                          { messageKey,
                            since ? QStringLiteral("Sie sind seit %1 Uhr anwesend.")
                                        .arg(since->toLocalTime().toString(QStringLiteral("HH:mm")))
                                  : QStringLiteral("Sie sind nicht als anwesend gebucht.") } });
}

Response PresenceStatusRoute::spoil(Response good, Fault fault, const RecordedRequest & /*request*/)
{
    return spoiledJson(std::move(good), fault, R"({"name":5,"present":"ja","message":[]})",
                       { QStringLiteral("name"), QStringLiteral("message") });
}

} // namespace simulator
