// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class AttendanceWorker;

/**
 * The thread of the card reader. It starts and ends with each window, so a rebuild restarts reader
 * and queues. Call both functions in the GUI thread.
 */

/**
 * Starts the thread with a new worker and returns the worker. Returns null if the thread is already
 * running or logging was stopped for good.
 */
AttendanceWorker *startAttendanceThread();

/** Ends the thread and its worker; terminates the thread after two seconds. */
void stopAttendanceThread();
