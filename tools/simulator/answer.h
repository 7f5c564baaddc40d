// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/enums.h"

#include <QByteArray>
#include <QJsonObject>

#include <functional>
#include <map>

namespace simulator {

class RouteHandler;
struct RecordedRequest;

/** A reply on its way out: what is sent, and how. */
struct Answer
{
    /** How the body leaves: at once, half of it before the connection ends, or byte by byte. */
    enum class Delivery { Whole, Half, Drip };

    int status = 200;
    QByteArray contentType;
    QByteArray body;
    std::map<QByteArray, QByteArray> headers {};
    Delivery delivery = Delivery::Whole;
    /// What the request changes at the service; not called if a fault keeps the request from it.
    std::function<void()> takeEffect {};
};

/// A short answer in plain text; a line end is added.
[[nodiscard]] Answer textAnswer(int status, const QString &text);
[[nodiscard]] Answer jsonAnswer(int status, const QJsonObject &object);

/**
 * What becomes of a good JSON answer under a fault of the kinds that all JSON services share.
 * @param wrongTypes the document for Fault::InvalidValue
 * @param texts the keys that Fault::HostileValues fills with markup and with too much of it
 */
[[nodiscard]] Answer spoiledJson(Answer good, Fault fault, const char *wrongTypes,
                                 const QStringList &texts);

/// Whether the service gets the request all the same, so that only the answer suffers.
[[nodiscard]] bool letsRequestsThrough(Fault fault);

/**
 * What becomes of a good answer under a fault. Hang and Slow change nothing, since they are a
 * matter of when, nor does Refuse, under which there is none.
 * @param newLocation where redirects lead
 */
[[nodiscard]] Answer spoiled(Answer answer, Fault fault, RouteHandler &handler,
                             const QByteArray &newLocation, const RecordedRequest &request);

} // namespace simulator
