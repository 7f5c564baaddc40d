// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/presencebookingroute.h"

#include "simulator/cardholders.h"
#include "simulator/presencebook.h"
#include "simulator/presencestatusroute.h"
#include "simulator/strictforms.h"
#include "simulator/tokenroute.h"

#include <QJsonDocument>

#include <array>
#include <limits>

namespace simulator {
namespace {

    using Int32 = std::numeric_limits<int>;
    using Int64 = std::numeric_limits<qint64>;

    /** A key with an integer value within bounds. */
    struct IntegerKey
    {
        const char *name;
        qint64 from;
        qint64 to;
        qint64 value = 0;
    };

    /// Reads the booking. Returns what is wrong with the document, or an empty text.
    QString read(const QByteArray &body, PresenceBooking *booking)
    {
        QJsonParseError problem {};
        const QJsonDocument document = QJsonDocument::fromJson(body, &problem);
        if (problem.error != QJsonParseError::NoError)
            return QStringLiteral("The body is not JSON: %1").arg(problem.errorString());
        const QJsonObject object = document.object();
        const auto expected = QStringLiteral("locationId logDelay tid time transmissionDelay type");
        const QString keys = object.keys().join(QLatin1Char(' '));
        if (!document.isObject() || keys != expected)
            return QStringLiteral("Expected an object with \"%1\", not \"%2\"").arg(expected, keys);

        const QString time = object.value(QLatin1String("time")).toString();
        booking->time = isoDateTime(time);
        if (!booking->time.isValid())
            return QStringLiteral("Not an ISO 8601 time: \"%1\"").arg(time);

        // A record can wait for weeks, which exceeds 32 bits.
        std::array<IntegerKey, 5> integers { {
            { "type", 0, int(PresenceType::Continuous) },
            { "tid", 0, Int64::max() },
            { "locationId", Int32::min(), Int32::max() },
            { "logDelay", Int64::min(), Int64::max() },
            { "transmissionDelay", Int64::min(), Int64::max() },
        } };
        for (IntegerKey &each : integers) {
            const QJsonValue value = object.value(QLatin1String(each.name));
            const QVariant number = value.toVariant();
            each.value = number.toLongLong();
            const bool isInteger = value.isDouble() && double(each.value) == value.toDouble();
            if (!isInteger || each.value < each.from || each.value > each.to)
                return QStringLiteral("\"%1\" is not an integer within its bounds: %2")
                    .arg(QLatin1String(each.name), number.toString());
        }
        booking->type = PresenceType(integers[0].value);
        booking->tid = quint64(integers[1].value);
        booking->locationId = int(integers[2].value);
        booking->logDelay = integers[3].value;
        booking->transmissionDelay = integers[4].value;
        return {};
    }

} // namespace

PresenceBookingRoute::PresenceBookingRoute(const CardHolders &holders, const TokenRoute &tokens,
                                           PresenceBook &book)
    : m_holders(holders)
    , m_tokens(tokens)
    , m_book(book)
{
}

bool PresenceBookingRoute::owns(const QByteArray &method, const QString &asked) const
{
    return method == "POST" && asked == QLatin1String(PresenceStatusRoute::path);
}

Response PresenceBookingRoute::respond(const QString & /*asked*/, const RecordedRequest &request)
{
    const QByteArray type = request.headers.value("content-type");
    if (type.split(';').first().trimmed() != "application/json")
        return textResponse(415, QStringLiteral("The content type must be application/json"));
    if (!m_tokens.isAuthorized(request.headers.value("authorization")))
        return textResponse(401, QStringLiteral("Unknown or expired token"));
    PresenceBooking booking;
    const QString complaint = read(request.body, &booking);
    if (!complaint.isEmpty())
        return textResponse(400, complaint);

    booking.acceptedAt = QDateTime::currentDateTime();
    const QString name = m_holders.nameOf(booking.tid);
    const QString greeting = m_book.isArrival(booking)
        ? QStringLiteral("Willkommen, %1! Ihr Kommen wurde um %2 Uhr gebucht.")
        : QStringLiteral("Auf Wiedersehen, %1! Ihr Gehen wurde um %2 Uhr gebucht.");
    const QString message = name.isEmpty()
        ? CardHolders::unknownCard(booking.tid)
        : greeting.arg(name, booking.time.toLocalTime().toString(QStringLiteral("HH:mm")));
    Response good = jsonResponse(200, { { QStringLiteral("message"), message } });
    good.takeEffect = [this, booking] { m_book.enter(booking); };
    return good;
}

Response PresenceBookingRoute::spoil(Response good, Fault fault,
                                     const RecordedRequest & /*request*/)
{
    return spoiledJson(std::move(good), fault, R"({"message":[]})", { QStringLiteral("message") });
}

} // namespace simulator
