// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QNetworkReply;

/**
 * Aborts @p reply, with a log line, if the head of its response has more than 64 kB or 100 lines.
 *
 * Qt compares each line with all before it, in the thread of the reply: 120 000 lines in 0.6 MB
 * block it for minutes. So the head is looked at when Qt's own thread hands it over, and a large
 * one never arrives. Until then queued calls to the reply may be made to slots by name, or to
 * function objects, but not to pointers to members.
 */
void filterHead(QNetworkReply *reply);
