// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Preloaded into the kiosk by week.py. The monotonic clock, and with it every time-out, runs
// LUMENBOARD_WEEK_FACTOR times as fast; the time of day, which services check, stays. It writes the
// bytes of heap in use and the numbers of objects and notices to LUMENBOARD_WEEK_COUNTS.

#include <QAbstractItemModel>
#include <QCoreApplication>
#include <QQmlEngine>
#include <QSaveFile>
#include <QThread>
#include <QTimer>

#include <csignal>
#include <ctime>
#include <malloc.h>
#include <mutex>
#include <poll.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <unordered_set>

// Qt's table of hooks for tools; no public header declares it.
extern quintptr Q_CORE_EXPORT qtHookData[]; // NOLINT: Qt's name and type

namespace {

constexpr qint64 second = 1'000'000'000; // in ns

const qint64 s_factor = std::max(1, qEnvironmentVariableIntValue("LUMENBOARD_WEEK_FACTOR"));
std::mutex s_mutex; // for s_objects, which live in many threads
auto &s_objects = *new std::unordered_set<QObject *>; // outlives every static object

timespec scaled(const timespec &time, qint64 factor, qint64 divisor)
{
    const qint64 ns = (time.tv_sec * second + time.tv_nsec) * factor / divisor;
    return { ns / second, ns % second };
}

/** An object of the GUI thread, which alone can delete it. */
template <typename Class> Class *find(const char *className)
{
    const std::lock_guard lock(s_mutex);
    for (QObject *object : s_objects) {
        if (object->thread() == QThread::currentThread() && object->inherits(className))
            return qobject_cast<Class *>(object);
    }
    return nullptr;
}

int objectCount()
{
    const std::lock_guard lock(s_mutex);
    return int(s_objects.size());
}

void writeCounts()
{
    if (auto *engine = find<QQmlEngine>("QQmlEngine"))
        engine->collectGarbage(); // else chance decides which unused objects still exist
    const auto *notices = find<QAbstractItemModel>("NotificationsModel");
    const auto noticeCount = QByteArray::number(notices ? notices->rowCount() : 0);
    QSaveFile file(qEnvironmentVariable("LUMENBOARD_WEEK_COUNTS"));
    file.open(QIODevice::WriteOnly);
    const auto heap = mallinfo2(); // dirty memory also holds what is free between blocks in use
    const QByteArray bytes = QByteArray::number(qulonglong(heap.uordblks + heap.hblkhd));
    file.write(bytes + ' ' + QByteArray::number(objectCount()) + ' ' + noticeCount);
    file.commit();
}

void startCounting()
{
    constexpr int intervalMs = 500; // of real time

    auto *timer = new QTimer(QCoreApplication::instance());
    QObject::connect(timer, &QTimer::timeout, writeCounts);
    timer->start(intervalMs * int(s_factor));
}

[[maybe_unused]] const bool s_isHooked = [] {
    qtHookData[3] = reinterpret_cast<quintptr>(+[](QObject *added) {
        const std::lock_guard lock(s_mutex);
        s_objects.insert(added);
    });
    qtHookData[4] = reinterpret_cast<quintptr>(+[](QObject *removed) {
        const std::lock_guard lock(s_mutex);
        s_objects.erase(removed);
    });
    return true;
}();

} // namespace

Q_COREAPP_STARTUP_FUNCTION(startCounting)

extern "C" {

int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    const long result = ::syscall(SYS_clock_gettime, clock, time);
    if (result == 0 && clock == CLOCK_MONOTONIC && s_factor != 0) // 0 until it is initialised
        *time = scaled(*time, s_factor, 1);
    return int(result);
}

int ppoll(pollfd *files, nfds_t size, const timespec *timeout, const sigset_t *mask)
{
    timespec left = timeout ? scaled(*timeout, 1, s_factor) : timespec {};
    return int(::syscall(SYS_ppoll, files, size, timeout ? &left : nullptr, mask, _NSIG / 8));
}

int poll(pollfd *files, nfds_t size, int timeoutMs)
{
    const timespec timeout { timeoutMs / 1000, timeoutMs % 1000 * 1'000'000L };
    return ppoll(files, size, timeoutMs < 0 ? nullptr : &timeout, nullptr);
}

int pthread_cond_timedwait(pthread_cond_t *condition, pthread_mutex_t *mutex, const timespec *until)
{
    if (until->tv_sec > second) // not since the machine's start: a time of day
        return pthread_cond_clockwait(condition, mutex, CLOCK_REALTIME, until);
    const timespec end = scaled(*until, 1, s_factor);
    return pthread_cond_clockwait(condition, mutex, CLOCK_MONOTONIC, &end);
}
}
