// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/attendancethread.h"

#include "api/lbapi.h"
#include "app/workerthread.h"
#include "base/connections.h"
#include "reader/attendanceworker.h"
#include "status/kioskstatus.h"

#include <QDebug>
#include <QThread>

#include <atomic>

namespace {

/// Survives the worker: a rebuilt window must not resume what was stopped for good.
std::atomic<bool> s_isLoggingStopped = false;

/// False in a second kiosk that waits for the first one's end. GUI thread.
bool s_hasStarted = false;

/**
 * One thread for the process: a rebuild replaces the window. Never destroyed, since a worker that
 * blocks may still run in it at the end.
 */
QThread &attendanceThread()
{
    static auto *thread = new QThread;
    return *thread;
}

/** Belongs to the attendance thread, whether that runs or not. */
QObject &threadProbe()
{
    static auto *probe = [] {
        auto *object = new QObject;
        object->moveToThread(&attendanceThread());
        return object;
    }();
    return *probe;
}

/** What the worker tells of the reader, the disk and the end of logging. */
void wireReadiness(const AttendanceWorker *worker)
{
    CardReadiness *readiness = LBAPI::instance()->cardReadiness();
    QObject::connect(
        worker, &AttendanceWorker::loggingStopped, worker, [] { s_isLoggingStopped = true; },
        Qt::DirectConnection);
    connectChecked(worker, SIGNAL(loggingStopped()), readiness, SLOT(onLoggingStopped()));
    connectChecked(worker,
                   SIGNAL(readerStateChanged(bool)), readiness, SLOT(onReaderStateChanged(bool)));
    connectChecked(worker,
                   SIGNAL(recordsKeptChanged(bool)), readiness, SLOT(onRecordsKeptChanged(bool)));
    // Posted, like the signals: the last worker's come before it.
    QMetaObject::invokeMethod(readiness, &CardReadiness::onSearchStarted, Qt::QueuedConnection);
}

/** What the worker tells for the status. */
void wireStatus(const AttendanceWorker *worker)
{
    KioskStatus *status = KioskStatus::instance();
    connectChecked(worker, SIGNAL(readerOpened(QString)), status, SLOT(onReaderOpened(QString)));
    connectChecked(worker,
                   SIGNAL(readerStateChanged(bool)), status, SLOT(onReaderStateChanged(bool)));
    connectChecked(worker, SIGNAL(cardRead()), status, SLOT(onCardRead()));
    connectChecked(worker,
                   SIGNAL(attendanceStatusChanged(QueueStatus)), status,
                          SLOT(onAttendanceStatusChanged(QueueStatus)));
    connectChecked(worker,
                   SIGNAL(presenceStatusChanged(QueueStatus)), status,
                          SLOT(onPresenceStatusChanged(QueueStatus)));
    // Posted, like the signals: the last worker's come before it.
    QMetaObject::invokeMethod(status, &KioskStatus::onWorkerStarted, Qt::QueuedConnection);
}

} // namespace

bool startAttendanceThread()
{
    QThread &thread = attendanceThread();
    // A thread that was left behind: isRunning() may be false, and start() would wait for its end.
    if (!thread.wait(0)) {
        qWarning() << "Attendance worker thread already running.";
        LBAPI::instance()->cardReadiness()->onSearchStarted(); // its reader answers nobody
        return false;
    }
    if (s_isLoggingStopped) {
        qWarning() << "Logging has been stopped, not starting the attendance worker thread.";
        return false;
    }
    qDebug() << "Starting attendance worker thread..." << QThread::currentThread();
    s_hasStarted = true;
    auto *worker = new AttendanceWorker;
    wireReadiness(worker);
    wireStatus(worker);
    startWorkerThread(thread, worker);
    return true;
}

void stopAttendanceThread()
{
    constexpr WorkerThreadTexts texts { "Stopping attendance worker thread...",
                                        "Attendance worker thread did not stop, terminating...",
                                        "Attendance worker thread stopped.",
                                        "Attendance worker thread cannot be ended, leaving it "
                                        "behind. No card is read until the program restarts.",
                                        "attendance worker thread" };
    if (stopWorkerThread(attendanceThread(), texts) == ThreadEnd::NotRunning)
        qDebug() << "Attendance worker thread is not running.";
}

void askAttendanceThread(const std::function<void()> &answer)
{
    if (s_isLoggingStopped || !s_hasStarted) // the thread need not run
        answer();
    else
        QMetaObject::invokeMethod(&threadProbe(), answer, Qt::QueuedConnection);
}
