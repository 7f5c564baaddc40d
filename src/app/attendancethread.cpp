// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/attendancethread.h"

#include "app/workerthread.h"
#include "reader/attendanceworker.h"

#include <QDebug>
#include <QThread>

namespace {

/** One for the process: windows come and go, and a thread outlives none of its objects. */
QThread &attendanceThread()
{
    static QThread thread;
    return thread;
}

} // namespace

void startAttendanceThread()
{
    QThread &thread = attendanceThread();
    if (thread.isRunning()) {
        qWarning() << "Attendance worker thread already running.";
        return;
    }
    if (AttendanceWorker::isLoggingStopped()) {
        qWarning() << "Logging has been stopped, not starting the attendance worker thread.";
        return;
    }
    qDebug() << "Starting attendance worker thread..." << QThread::currentThread();
    startWorkerThread(thread, new AttendanceWorker);
}

void stopAttendanceThread()
{
    constexpr WorkerThreadTexts texts { "Stopping attendance worker thread...",
                                        "Attendance worker thread did not stop, terminating...",
                                        "Attendance worker thread stopped." };
    if (!stopWorkerThread(attendanceThread(), texts))
        qDebug() << "Attendance worker thread is not running.";
}
