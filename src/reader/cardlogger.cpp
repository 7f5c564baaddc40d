// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "reader/cardlogger.h"

#include "attendance/attendancenamecache.h"
#include "attendance/attendancequeue.h"
#include "base/connections.h"
#include "config/config.h"
#include "net/xnetworkaccessmanager.h"
#include "presence/tallyxqueue.h"

#include <QTimer>

#include <initializer_list>

using namespace std::chrono_literals;

namespace {

bool logsAttendance()
{
    return Config::instance()->attendanceEnabled();
}

bool logsPresence()
{
    return Config::instance()->tallyxMode() != Config::TallyxDisabled;
}

} // namespace

CardLogger::CardLogger(const RequestLimits &limits, QObject *parent)
    : QObject(parent)
    , m_names(new AttendanceNameCache(this))
    // A manager each: Qt opens six connections to a host, and one service may hang on all of them.
    , m_attendance(new AttendanceQueue(*new XNetworkAccessManager(this), *m_names, limits, this))
    , m_presence(new TallyxQueue(*new XNetworkAccessManager(this), limits, this))
{
    for (RecordQueue *queue : std::initializer_list<RecordQueue *> { m_attendance, m_presence }) {
        connect(queue, &RecordQueue::fatalStop, this, &CardLogger::stop);
        connect(queue, &RecordQueue::keepingChanged, this, &CardLogger::keepingChanged);
    }
    connect(m_attendance, &RecordQueue::statusChanged, this, &CardLogger::attendanceStatusChanged);
    connect(m_presence, &RecordQueue::statusChanged, this, &CardLogger::presenceStatusChanged);

    auto *saveTimer = new QTimer(this);
    connectChecked(saveTimer, SIGNAL(timeout()), m_names, SLOT(save()));
    saveTimer->start(1h);
}

CardLogger::~CardLogger()
{
    // Children are deleted in creation order, but requests must go before the manager.
    delete m_presence;
    delete m_attendance;
}

void CardLogger::log(quint64 transponderId)
{
    if (logsAttendance())
        m_attendance->log(transponderId);
    if (logsPresence())
        m_presence->begin(transponderId);
}

void CardLogger::reportFailure(const Failure &failure)
{
    m_attendance->reportFailure(failure);
}

void CardLogger::processQueue()
{
    m_attendance->process();
    m_presence->process();
}

void CardLogger::onTokenAvailable()
{
    m_presence->process();
}

bool CardLogger::keepsRecords() const
{
    return (m_attendance->keepsRecords() || !logsAttendance())
        && (m_presence->keepsRecords() || !logsPresence());
}

/** Stops all logging: a record that is logged twice is worse than one that is not logged. */
void CardLogger::stop()
{
    m_isStopped = true;
    m_attendance->stop();
    m_presence->stop();
    Q_EMIT stopped();
}
