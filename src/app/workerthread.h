// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QObject;
class QThread;

/** Log lines for the end of a thread. */
struct WorkerThreadTexts
{
    const char *stopping;
    const char *terminating;
    const char *stopped;
    const char *leftBehind;
    const char *name; ///< a literal
};

enum class ThreadEnd {
    NotRunning,
    Ended,
    LeftBehind, ///< still running: the QThread must never be destroyed
};

/**
 * Moves @p worker to @p thread and starts the thread. The worker's slot init() runs there first;
 * the worker is deleted when the thread has finished.
 */
void startWorkerThread(QThread &thread, QObject *worker);

/**
 * Requests interruption and the end of @p thread, and terminates it if it is still running after
 * two seconds. A worker that blocks where it cannot be terminated, for example in its destructor,
 * is left behind half a second later.
 */
[[nodiscard]] ThreadEnd stopWorkerThread(QThread &thread, const WorkerThreadTexts &texts);
