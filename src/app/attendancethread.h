// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

/**
 * Starts the thread of the card reader with a new worker. It starts and ends with each window, so
 * that a rebuild restarts reader and queues. Returns false if the thread is running already or
 * logging was stopped for good. GUI thread.
 */
bool startAttendanceThread();

/**
 * Ends the thread and its worker, after two seconds by force. A worker that blocks even then is
 * left behind; the thread is not started again while it runs. GUI thread.
 */
void stopAttendanceThread();

/**
 * Calls @p answer in the attendance thread as soon as that thread gets to it, or at once in the
 * caller's if logging was stopped for good or has not started yet. GUI thread.
 */
void askAttendanceThread(const std::function<void()> &answer);
