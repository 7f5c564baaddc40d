// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QThread>

/** Runs a worker in its own thread like the program; both end with this object. */
template <typename Worker> struct WorkerRunner
{
    explicit WorkerRunner(Worker *w)
        : worker(w)
    {
        worker->moveToThread(&thread);
        QObject::connect(&thread, &QThread::finished, worker, &QObject::deleteLater);
        QObject::connect(&thread, SIGNAL(started()), worker, SLOT(init()));
        thread.start();
    }
    Q_DISABLE_COPY_MOVE(WorkerRunner)
    ~WorkerRunner()
    {
        thread.quit();
        thread.wait();
    }

    /** Calls a slot of the worker in its thread. */
    void post(const char *slot) const
    {
        QMetaObject::invokeMethod(worker, slot, Qt::QueuedConnection);
    }

    QThread thread;
    Worker *worker;
};
