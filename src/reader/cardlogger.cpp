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

using namespace std::chrono_literals;

CardLogger::CardLogger(const RequestLimits &limits, QObject *parent)
    : QObject(parent)
    , m_names(new AttendanceNameCache(this))
    // A manager each: Qt opens six connections to a host, and one service may hang on all of them.
    , m_attendance(new AttendanceQueue(*new XNetworkAccessManager(this), *m_names, limits, this))
    , m_presence(new TallyxQueue(*new XNetworkAccessManager(this), limits, this))
{
    connect(m_attendance, &RecordQueue::fatalStop, this, &CardLogger::stop);
    connect(m_presence, &RecordQueue::fatalStop, this, &CardLogger::stop);
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
    m_attendance->process();
    m_presence->process();
}

void CardLogger::onTokenAvailable()
{
    m_presence->process();
}

/** Stops all logging: a record that is logged twice is worse than one that is not logged. */
void CardLogger::stop()
{
    m_isStopped = true;
    m_attendance->stop();
    m_presence->stop();
    Q_EMIT stopped();
}
