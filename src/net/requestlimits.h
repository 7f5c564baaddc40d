// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QNetworkRequest>
#include <QtGlobal>

#include <chrono>

class QNetworkReply;

/** What a request may cost before it is given up. */
struct RequestLimits
{
    std::chrono::milliseconds silence = std::chrono::seconds(30); ///< longest time without a byte
    std::chrono::milliseconds deadline = std::chrono::seconds(60); ///< for the request as a whole
    qint64 bodyBytes = 1024 * 1024; ///< largest body that is taken in
};

/**
 * A request for @p url that ends after a silence, and whose answer is not to be compressed: a
 * compressed body would be inflated before its size could be checked.
 */
[[nodiscard]] QNetworkRequest limitedRequest(const QUrl &url, const RequestLimits &limits);

/** Gives @p request the headers and the time-out of limitedRequest(). */
void applyLimits(QNetworkRequest &request, const RequestLimits &limits);

/**
 * Watches @p reply from its first moment: past the deadline or the body size it is aborted with a
 * log line, and ends like any other network error ("Operation canceled").
 */
void enforceLimits(QNetworkReply *reply, const RequestLimits &limits);
