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

    template <typename Integer> constexpr auto most = std::numeric_limits<Integer>::max();
    template <typename Integer> constexpr auto least = std::numeric_limits<Integer>::min();

    /** A key whose value is an integer within bounds. */
    struct IntegerKey
    {
        const char *name;
        qint64 from;
        qint64 to;
        qint64 value = 0;
    };

    /// What is wrong with the document, or an empty text and the booking that it holds.
    QString read(const QByteArray &body, PresenceBooking *booking)
    {
        QJsonParseError problem {};
        const QJsonDocument document = QJsonDocument::fromJson(body, &problem);
        if (problem.error != QJsonParseError::NoError)
            return QStringLiteral("The body is no JSON: %1").arg(problem.errorString());
        const QJsonObject object = document.object();
        const auto expected = QStringLiteral("locationId logDelay tid time transmissionDelay type");
        const QString keys = object.keys().join(QLatin1Char(' '));
        if (!document.isObject() || keys != expected)
            return QStringLiteral("Not an object of \"%1\" but \"%2\"").arg(expected, keys);

        const QString time = object.value(QLatin1String("time")).toString();
        booking->time = isoDateTime(time);
        if (!booking->time.isValid())
            return QStringLiteral("No ISO 8601 time: \"%1\"").arg(time);

        // A record can wait for weeks, which is more than 32 bits hold.
        std::array<IntegerKey, 5> integers { {
            { "type", 0, int(PresenceType::Continuous) },
            { "tid", 0, most<qint64> },
            { "locationId", least<int>, most<int> },
            { "logDelay", least<qint64>, most<qint64> },
            { "transmissionDelay", least<qint64>, most<qint64> },
        } };
        for (IntegerKey &each : integers) {
            const QJsonValue value = object.value(QLatin1String(each.name));
            const QVariant number = value.toVariant();
            each.value = number.toLongLong();
            const bool isInteger = value.isDouble() && double(each.value) == value.toDouble();
            if (!isInteger || each.value < each.from || each.value > each.to)
                return QStringLiteral("\"%1\" is no integer as expected: %2")
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

Answer PresenceBookingRoute::answer(const QString & /*asked*/, const RecordedRequest &request)
{
    const QByteArray type = request.headers.value("content-type");
    if (type.split(';').first().trimmed() != "application/json")
        return textAnswer(415, QStringLiteral("A booking is application/json"));
    if (!m_tokens.isAuthorized(request.headers.value("authorization")))
        return textAnswer(401, QStringLiteral("No token that was issued here"));
    PresenceBooking booking;
    const QString complaint = read(request.body, &booking);
    if (!complaint.isEmpty())
        return textAnswer(400, complaint);

    booking.acceptedAt = QDateTime::currentDateTime();
    const QString name = m_holders.nameOf(booking.tid);
    const QString greeting = m_book.isArrival(booking)
        ? QStringLiteral("Willkommen, %1! Ihr Kommen wurde um %2 Uhr gebucht.")
        : QStringLiteral("Auf Wiedersehen, %1! Ihr Gehen wurde um %2 Uhr gebucht.");
    const QString message = name.isEmpty()
        ? CardHolders::unknownCard(booking.tid)
        : greeting.arg(name, booking.time.toLocalTime().toString(QStringLiteral("HH:mm")));
    Answer good = jsonAnswer(200, { { QStringLiteral("message"), message } });
    good.takeEffect = [this, booking] { m_book.enter(booking); };
    return good;
}

Answer PresenceBookingRoute::spoil(Answer good, Fault fault, const RecordedRequest & /*request*/)
{
    return spoiledJson(std::move(good), fault, R"({"message":[]})", { QStringLiteral("message") });
}

} // namespace simulator
