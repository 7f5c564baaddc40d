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

/** The services that the simulator plays, each by a handler of its own. */
enum class Route {
    Schedule,
    Token,
    Configuration,
    Attendance,
    PresenceStatus,
    PresenceBooking,
    RegistrationStatus,
    Registration,
    RegistrationPage ///< what a phone sees: the QR code and the page that it leads to
};
Q_ENUM_NS(Route)

/** What can be wrong with the answers of a route. */
enum class Fault {
    None,
    Empty, ///< 200 without a body
    Truncated, ///< half a document, sent as if it were whole
    BrokenJson, ///< a JSON document that is cut off
    EmptyList, ///< 200 with []
    WrongRoot, ///< a well-formed document of another kind
    InvalidValue, ///< a document with a value that can not be read
    Huge, ///< about 50 MB of valid document
    Oversize, ///< more than 64 MB of valid document
    EntityBomb, ///< a small document that expands to gigabytes
    CaptivePortal, ///< 200 with the login page of a guest network
    Redirect, ///< 302 to the same path below /moved, where the good answer waits
    RedirectAway, ///< 307 to another server, which records whoever comes
    NotFound, ///< 404
    ServerError, ///< 500
    Refuse, ///< the connection ends without an answer, as if nobody listened
    Drop, ///< the connection ends amid the body
    Hang, ///< no answer until the fault is switched
    Drip, ///< the headers, then one byte per drip interval
    Slow, ///< the good answer, one drip interval later
    Gzip, ///< a compressed body nobody asked for
    WrongCredentials, ///< 401, whoever asks
    TinyExpiry, ///< a token that is valid for one second
    NoRefreshToken, ///< a token alone, as today's servers answer client credentials
    ExpiredRefreshToken, ///< refresh tokens are refused
    HostileValues ///< a document with values that nobody should trust
};
Q_ENUM_NS(Fault)

/** What a presence booking says, as the service numbers it. */
enum class PresenceType {
    Auto, ///< coming or leaving, whichever it was not the last time
    In,
    Out,
    Continuous ///< seen in passing, taken like Auto
};
Q_ENUM_NS(PresenceType)

/// The word for an enumerator in commands: EntityBomb is "entity-bomb".
[[nodiscard]] QString hyphenated(const char *enumerator);

template <typename Enum> [[nodiscard]] QString nameOf(Enum value)
{
    return hyphenated(QMetaEnum::fromType<Enum>().valueToKey(static_cast<int>(value)));
}

/// All enumerators, which have to count from 0.
template <typename Enum> [[nodiscard]] std::vector<Enum> values()
{
    std::vector<Enum> list;
    for (int i = 0; i < QMetaEnum::fromType<Enum>().keyCount(); ++i)
        list.push_back(static_cast<Enum>(i));
    return list;
}

/// The words for all enumerators, in their order.
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
