// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QNetworkReply;

/**
 * Ends @p reply if the head of its response, or the line with the size of a chunk, does not end.
 *
 * Qt reads both without bound, tells nobody before their end, and does not listen to abort() while
 * bytes keep coming. So this looks at what the kernel counts for the connections of the process:
 * bytes that belong to no body belong to such a line. A connection that receives more than 1 MB of
 * them for 5 s is closed. filterHead() refuses a head that ends.
 */
void limitHead(QNetworkReply *reply);
