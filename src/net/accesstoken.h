// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

class QNetworkRequest;

/**
 * The current access token for every thread: an immutable snapshot that the token client replaces
 * and others read, so that nobody touches an object of the client's thread.
 */
namespace accesstoken {

/** Replaces the snapshot. */
void publish(const QString &token);

/** The current token, empty before the first. */
[[nodiscard]] QString current();

/** Gives @p request @p token as its bearer. */
void setBearer(QNetworkRequest &request, const QString &token);

/** Gives @p request the current token as its bearer; false, and nothing set, when there is none. */
[[nodiscard]] bool authorize(QNetworkRequest &request);

} // namespace accesstoken
