// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/requestlimits.h"

#include <functional>

class QByteArray;
class QNetworkAccessManager;
class QNetworkReply;
class QNetworkRequest;
class QUrl;

/**
 * Sends requests that end within their limits. All requests of the program go through here.
 *
 * A silent connection ends after the transfer time-out. Past the deadline or the maximum body size
 * the reply is aborted with a log line, and finishes like any network error ("Operation canceled").
 * A compressed response would be inflated before its size could be checked, so none is accepted.
 */
namespace http {

/** A request for @p url that accepts no compression; add the other headers to it. */
[[nodiscard]] QNetworkRequest request(const QUrl &url);

QNetworkReply *get(QNetworkAccessManager &manager, const QNetworkRequest &request,
                   const RequestLimits &limits);

QNetworkReply *post(QNetworkAccessManager &manager, const QNetworkRequest &request,
                    const QByteArray &body, const RequestLimits &limits);

/** Hands a request to the network and returns its reply. */
using Transport = std::function<QNetworkReply *(const QNetworkRequest &)>;

/** Passes the limited request to @p transport; for a manager that limits what others send. */
QNetworkReply *send(QNetworkRequest request, const RequestLimits &limits,
                    const Transport &transport);

} // namespace http
