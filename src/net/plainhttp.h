// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QUrl;

/** Whether what is sent to @p url can be read on its way: plain http to another machine. */
[[nodiscard]] bool isPlainHttpToOthers(const QUrl &url);

/**
 * Warns of each configured address to which tokens or records would go unprotected, once per
 * address and process. GUI thread, at start and whenever the configuration has changed.
 */
void warnOfPlainHttp();
