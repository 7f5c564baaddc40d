// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

class QNetworkReply;

/** @p text as one line without control characters, of at most @p longest characters. */
[[nodiscard]] QString printableLine(QString text, int longest);

/** The reply's error string, fit for log and screen: no credentials, one line, short. */
[[nodiscard]] QString errorText(const QNetworkReply &reply);
