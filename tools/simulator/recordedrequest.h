// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QMultiMap>
#include <QString>

namespace simulator {

/** One request as it arrived at a route. */
struct RecordedRequest
{
    QDateTime time;
    QByteArray method;
    QString path; ///< the request target, with its query
    QMultiMap<QByteArray, QByteArray> headers; ///< names in lower case
    QByteArray body;
    bool accepted = false; ///< it passed the strict checks, whatever fault applied afterwards
};

} // namespace simulator
