// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

class QNetworkReply;

/** The reply's error string, fit for log and screen: no password of its address, one line, short.
 */
[[nodiscard]] QString errorText(const QNetworkReply &reply);
