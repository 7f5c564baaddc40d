// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QUrl;

/** Whether what is sent to @p url can be read on its way: plain http to another machine. */
[[nodiscard]] bool isPlainHttpToOthers(const QUrl &url);

/** Warns, once per address and process, when secrets would go to @p url unprotected. */
void warnOfPlainHttp(const QUrl &url);
