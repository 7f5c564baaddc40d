// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/workercontroller.h"

#include "api/lbapi.h"
#include "app/workerthread.h"
#include "remoteconfig/worker.h"

#include <QDebug>
#include <QThread>

WorkerController::WorkerController(QObject *parent)
    : QObject(parent)
    , m_thread(new QThread(this))
{
    qDebug() << "Starting worker thread..." << QThread::currentThread();
    startWorkerThread(*m_thread, new Worker(LBAPI::instance()));
}

WorkerController::~WorkerController()
{
    constexpr WorkerThreadTexts texts { "Stopping worker thread...",
                                        "Worker thread did not stop, terminating...",
                                        "Worker thread stopped.",
                                        "Worker thread cannot be ended, leaving it behind.",
                                        "configuration worker thread" };
    const ThreadEnd end = stopWorkerThread(*m_thread, texts);
    if (end == ThreadEnd::NotRunning)
        qWarning() << "Worker thread is not running.";
    else if (end == ThreadEnd::LeftBehind)
        m_thread->setParent(nullptr); // or it would be destroyed while it runs
}
