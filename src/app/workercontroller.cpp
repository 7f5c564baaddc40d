// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/workercontroller.h"

#include "api/lbapi.h"
#include "app/workerthread.h"
#include "base/connections.h"
#include "remoteconfig/worker.h"
#include "status/kioskstatus.h"

#include <QDebug>
#include <QThread>

WorkerController::WorkerController(QObject *parent)
    : QObject(parent)
    , m_thread(new QThread(this))
{
    qDebug() << "Starting worker thread..." << QThread::currentThread();
    auto *worker = new Worker(LBAPI::instance());
    KioskStatus *status = KioskStatus::instance();
    connectChecked(worker,
                   SIGNAL(tokenObtained(QDateTime,QString)), status,
                          SLOT(onTokenObtained(QDateTime,QString)));
    connectChecked(worker, SIGNAL(tokenFailed(QString)), status, SLOT(onTokenFailed(QString)));
    connectChecked(
        worker, SIGNAL(newConfiguration(QJsonDocument)), status, SLOT(onConfigurationReceived()));
    connectChecked(
        worker, SIGNAL(configurationFailed(QString)), status, SLOT(onConfigurationFailed(QString)));
    startWorkerThread(*m_thread, worker);
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
