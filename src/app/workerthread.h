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
};

/**
 * Moves @p worker to @p thread and starts the thread. The worker's slot init() runs there first;
 * the worker is deleted when the thread has finished.
 */
void startWorkerThread(QThread &thread, QObject *worker);

/**
 * Ends @p thread, which can notice the requested interruption while it is busy. Terminates it if it
 * has not left its event loop within two seconds. Returns false if it was not running.
 */
[[nodiscard]] bool stopWorkerThread(QThread &thread, const WorkerThreadTexts &texts);
