// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/enums.h"

#include <QByteArray>
#include <QJsonObject>

#include <functional>
#include <map>

namespace simulator {

/** What a service sends, and how. */
struct Response
{
    /** How the body is sent: at once, half of it before the connection ends, or byte by byte. */
    enum class Delivery { Whole, Half, Drip };

    int status = 200;
    QByteArray contentType;
    QByteArray body;
    std::map<QByteArray, QByteArray> headers {};
    Delivery delivery = Delivery::Whole;
    /// What the request changes at the service. Not called if a fault stops the request.
    std::function<void()> takeEffect {};
};

/// A short response in plain text. Adds a line end.
[[nodiscard]] Response textResponse(int status, const QString &text);
[[nodiscard]] Response jsonResponse(int status, const QJsonObject &object);

/**
 * Applies a fault that all JSON services share to a good response.
 * @param wrongTypes the document for Fault::InvalidValue
 * @param texts the keys that Fault::HostileValues fills with very long markup
 */
[[nodiscard]] Response spoiledJson(Response good, Fault fault, const char *wrongTypes,
                                   const QStringList &texts);

} // namespace simulator
