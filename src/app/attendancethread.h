// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class AttendanceWorker;

/**
 * The thread of the card reader. It starts and ends with each window, so that a rebuild restarts
 * reader and queues. Called in the GUI thread.
 */

/**
 * Starts the thread with a new worker and returns the worker. Returns null if the thread is running
 * already or logging was stopped for good.
 */
AttendanceWorker *startAttendanceThread();

/** Ends the thread and its worker, after two seconds by force. */
void stopAttendanceThread();
