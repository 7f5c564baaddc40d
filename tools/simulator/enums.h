// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMetaEnum>
#include <QObject>
#include <QStringList>

#include <optional>
#include <vector>

namespace simulator {
Q_NAMESPACE

/** The simulated services, each with its own handler. */
enum class Route {
    Schedule,
    Token,
    Configuration,
    Attendance,
    PresenceStatus,
    PresenceBooking,
    RegistrationStatus,
    Registration,
    RegistrationPage ///< for phones: the QR code and the page behind it
};
Q_ENUM_NS(Route)

/** Faults of a route. */
enum class Fault {
    None,
    Empty, ///< 200 without a body
    Truncated, ///< half a document, sent as if it were complete
    BrokenJson, ///< incomplete JSON
    EmptyList, ///< 200 with []
    ErrorObject, ///< 200 with an object that names an error
    WrongRoot, ///< well-formed, but another kind of document
    InvalidValue, ///< a document with an invalid value
    Huge, ///< about 50 MB of valid document
    Oversize, ///< more than 64 MB of valid document
    EntityBomb, ///< a small document that expands to gigabytes
    CaptivePortal, ///< 200 with the login page of a guest network
    Redirect, ///< 302 to the same path below /moved, which sends the good response
    RedirectAway, ///< 307 to another server, which records every request
    NotFound, ///< 404
    ServerError, ///< 500
    Refuse, ///< the connection ends without a response
    Drop, ///< the connection ends in the middle of the body
    Hang, ///< no response until the fault changes
    Drip, ///< the headers, then one byte per drip interval
    Slow, ///< the good response, one drip interval late
    Gzip, ///< a compressed body, although not requested
    WrongCredentials, ///< 401 for every request
    TinyExpiry, ///< a token that is valid for one second
    NoRefreshToken, ///< only an access token, as current servers issue for client credentials
    ExpiredRefreshToken, ///< refresh tokens are refused
    HostileValues ///< a document with values that a client must not trust
};
Q_ENUM_NS(Fault)

/** Types of presence bookings, numbered as in the service. */
enum class PresenceType {
    Auto, ///< the opposite of the last booking
    In,
    Out,
    Continuous ///< read in passing; treated like Auto
};
Q_ENUM_NS(PresenceType)

/// The word for an enumerator in commands: EntityBomb is "entity-bomb".
[[nodiscard]] QString hyphenated(const char *enumerator);

template <typename Enum> [[nodiscard]] QString nameOf(Enum value)
{
    return hyphenated(QMetaEnum::fromType<Enum>().valueToKey(static_cast<int>(value)));
}

/// All enumerators. They must be numbered from 0.
template <typename Enum> [[nodiscard]] std::vector<Enum> values()
{
    std::vector<Enum> list;
    for (int i = 0; i < QMetaEnum::fromType<Enum>().keyCount(); ++i)
        list.push_back(static_cast<Enum>(i));
    return list;
}

/// The words for all enumerators, in order.
template <typename Enum> [[nodiscard]] QStringList names()
{
    QStringList list;
    for (const Enum value : values<Enum>())
        list += nameOf(value);
    return list;
}

template <typename Enum> [[nodiscard]] std::optional<Enum> fromName(const QString &name)
{
    const int index = names<Enum>().indexOf(name);
    return index < 0 ? std::nullopt : std::optional(static_cast<Enum>(index));
}

} // namespace simulator
