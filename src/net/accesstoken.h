// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

class QNetworkRequest;

/**
 * The current access token as an immutable snapshot. The token client replaces it; any thread reads
 * it without a lock and without touching an object of the client's thread.
 */
namespace accesstoken {

/** Replaces the snapshot. */
void publish(const QString &token);

/** The current token; empty before the first one. */
[[nodiscard]] QString current();

/** Sets @p token as the bearer token of @p request. */
void setBearer(QNetworkRequest &request, const QString &token);

/** Sets the current token as the bearer token of @p request; false if there is none. */
[[nodiscard]] bool authorize(QNetworkRequest &request);

} // namespace accesstoken
