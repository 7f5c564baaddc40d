// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/**
 * The thread that reads cards: starts and ends with each window, so that a rebuild starts reader
 * and queue anew. GUI thread.
 */

/** Starts a fresh worker, unless one runs or logging was stopped for good. */
void startAttendanceThread();

/** Ends the worker, after two seconds by force. */
void stopAttendanceThread();
