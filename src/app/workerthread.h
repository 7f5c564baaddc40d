// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QObject;
class QThread;

/** Log texts of a thread's end. */
struct WorkerThreadTexts
{
    const char *stopping;
    const char *terminating;
    const char *stopped;
};

/**
 * Moves @p worker to @p thread, has its slot init() called there once the thread has started and
 * the worker deleted when it has finished, and starts the thread.
 */
void startWorkerThread(QThread &thread, QObject *worker);

/**
 * Ends @p thread, which may look for a requested interruption while it is busy; one that does not
 * leave its event loop within two seconds is terminated. Returns false when it was not running.
 */
[[nodiscard]] bool stopWorkerThread(QThread &thread, const WorkerThreadTexts &texts);
