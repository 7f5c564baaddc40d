// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/workerthread.h"

#include "app/exitwatchdog.h"
#include "base/connections.h"

#include <QDebug>
#include <QThread>

#include <pthread.h>

void startWorkerThread(QThread &thread, QObject *worker)
{
    worker->moveToThread(&thread);
    // Cancelling the thread inside a destructor would abort the process.
    QObject::connect(&thread, &QThread::finished, worker,
                     [] { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr); });
    connectChecked(&thread, SIGNAL(finished()), worker, SLOT(deleteLater()));
    // Qt calls the slots of this signal with cancellation disabled: a worker that blocks in init()
    // could not be terminated, and the program would never end.
    QObject::connect(&thread, &QThread::started, worker,
                     [] { pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, nullptr); });
    connectChecked(&thread, SIGNAL(started()), worker, SLOT(init()));
    thread.start(QThread::InheritPriority);
}

ThreadEnd stopWorkerThread(QThread &thread, const WorkerThreadTexts &texts)
{
    constexpr unsigned long stopTimeoutMs = 2000;
    constexpr unsigned long terminateTimeoutMs = 500;

    qDebug() << texts.stopping;
    // isRunning() is false already while the worker is being deleted.
    if (thread.wait(0))
        return ThreadEnd::NotRunning;
    const exitwatchdog::Waiting waiting(texts.name);
    thread.requestInterruption();
    thread.quit();
    if (!thread.wait(stopTimeoutMs)) {
        qWarning() << texts.terminating;
        thread.terminate();
        if (!thread.wait(terminateTimeoutMs)) {
            qCritical() << texts.leftBehind;
            return ThreadEnd::LeftBehind;
        }
    }
    qDebug() << texts.stopped;
    return ThreadEnd::Ended;
}
