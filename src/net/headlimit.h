// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QNetworkReply;

/**
 * Ends @p reply if the head of its response is too large.
 *
 * Qt reads a head without bound, tells nobody before its end, and does not listen to abort() while
 * bytes keep coming. So this looks at what the kernel counts for the connections of the process
 * while no body arrives: then all bytes belong to heads. A head that does not end is cut off after
 * 1 MB and 2 s, by closing its connection. One that ends is refused beyond 64 kB.
 */
void limitHead(QNetworkReply *reply);
