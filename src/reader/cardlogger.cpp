// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "reader/cardlogger.h"

#include "attendance/attendancenamecache.h"
#include "attendance/attendancequeue.h"
#include "base/connections.h"
#include "config/config.h"
#include "net/xnetworkaccessmanager.h"
#include "presence/tallyxqueue.h"

#include <QDebug>

using namespace std::chrono_literals;

namespace {

constexpr auto firstPassDelay = 10s; // after the start, for the records of an earlier run
constexpr auto deferredPassDelay = 10s;
constexpr auto saveInterval = 1h;

} // namespace

CardLogger::CardLogger(const RequestLimits &limits, QObject *parent)
    : QObject(parent)
    , m_manager(new XNetworkAccessManager(this))
    , m_names(new AttendanceNameCache(this))
    , m_attendance(new AttendanceQueue(*m_manager, *m_names, limits, this))
    , m_presence(new TallyxQueue(*m_manager, limits, this))
    , m_queueTimer(this)
{
    connectQueue(*m_attendance);
    connectQueue(*m_presence);
    connect(m_attendance, &RecordQueue::passFinished, m_presence, &RecordQueue::startPass);
    // Attendance decides when the next pass starts; presence only brings it forward.
    connect(m_attendance, &RecordQueue::retryWanted, &m_queueTimer,
            [this](std::chrono::milliseconds delay) { m_queueTimer.start(delay); });
    connect(m_presence, &RecordQueue::retryWanted, &m_queueTimer,
            [this](std::chrono::milliseconds delay) {
                if (!m_queueTimer.isActive() || m_queueTimer.remainingTimeAsDuration() > delay)
                    m_queueTimer.start(delay);
            });
    m_queueTimer.setSingleShot(true);
    m_queueTimer.start(firstPassDelay);

    auto *saveTimer = new QTimer(this);
    connectChecked(saveTimer, SIGNAL(timeout()), m_names, SLOT(save()));
    saveTimer->start(saveInterval);
}

CardLogger::~CardLogger()
{
    // Children are deleted in creation order, but requests must go before the manager.
    delete m_presence;
    delete m_attendance;
}

void CardLogger::log(quint64 transponderId)
{
    const Config *config = Config::instance();
    if (config->attendanceEnabled())
        m_attendance->log(transponderId);
    if (config->tallyxMode() != Config::TallyxDisabled)
        m_presence->begin(transponderId);
}

void CardLogger::reportFailure(const Failure &failure)
{
    m_attendance->reportFailure(failure);
}

void CardLogger::processQueue()
{
    if (m_isStopped)
        return;
    if (m_attendance->hasOutstanding() || m_presence->hasOutstanding()) {
        qDebug() << "ongoing requests - queue processing deferred";
        m_queueTimer.start(deferredPassDelay);
        return;
    }
    m_attendance->startPass();
}

void CardLogger::connectQueue(RecordQueue &queue)
{
    connect(&queue, &RecordQueue::freshChanged, this, &CardLogger::pauseForFresh);
    connect(&queue, &RecordQueue::fatalStop, this, &CardLogger::stop);
}

/** A new card must not wait for the pass. */
void CardLogger::pauseForFresh()
{
    const bool hasFresh = m_attendance->hasFresh() || m_presence->hasFresh();
    m_attendance->setPaused(hasFresh);
    m_presence->setPaused(hasFresh);
}

/** Stops all logging: a record that is logged twice is worse than one that is not logged. */
void CardLogger::stop()
{
    m_isStopped = true;
    m_attendance->stop();
    m_presence->stop();
    Q_EMIT stopped();
}
