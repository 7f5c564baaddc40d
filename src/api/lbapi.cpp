// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "api/lbapi.h"

#include "base/connections.h"
#include "base/reason.h"

#include <QCoreApplication>
#include <QDebug>
#include <QThread>
#include <QtAlgorithms>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace {

QPointer<LBAPI> s_instance;

} // namespace

LBAPI::LBAPI(QObject *parent)
    : QObject(parent)
    , m_notifications(this)
    , m_boundaryTimer(this)
    , m_scheduleAge(this)
    , m_cardReadiness(this)
    , m_roomReadiness(this)
    , m_clockWatch(this)
    , m_retryTimer(this)
{
    const QPointer<LBAPI> self(this);
    Config::setLocationLookup(
        [self](qint64 id) { return self ? self->findLocation(id) : nullptr; });
    connect(config(), &Config::locationChanged, &m_boundaryTimer, &EventBoundaryTimer::watch);
    // Watch a new room at once, not only after the next schedule.
    connect(config(), &Config::configChanged, this,
            [this] { m_boundaryTimer.watch(config()->plenarLocation()); });
    m_retryTimer.setObjectName(QStringLiteral("scheduleRetry"));
    m_retryTimer.setSingleShot(true);
    connect(&m_retryTimer, &QTimer::timeout, this, &LBAPI::refreshEventData);
    connect(&m_clockWatch, &ClockWatch::mustLook, this, &LBAPI::followClock);
    connect(&m_scheduleAge, &ScheduleAge::asOfChanged, this, &LBAPI::scheduleAsOfChanged);
    connect(&m_cardReadiness, &CardReadiness::warningChanged, this, &LBAPI::cardWarningChanged);
    connect(&m_roomReadiness, &RoomReadiness::warningChanged, this, &LBAPI::roomWarningChanged);
    connect(config(), &Config::configChanged, this, &LBAPI::cardWarningChanged);
    connect(this, &LBAPI::scanTransponderChanged, this, &LBAPI::cardWarningChanged);
}

LBAPI *LBAPI::instance()
{
    if (!s_instance)
        s_instance = new LBAPI(QCoreApplication::instance());
    return s_instance;
}

Config *LBAPI::config() const
{
    return Config::instance();
}

EventData *LBAPI::eventData()
{
    if (!m_eventData)
        refreshEventData();
    return m_eventData;
}

void LBAPI::setScanTransponder(bool scan)
{
    if (m_scanTransponder == scan)
        return;
    m_scanTransponder = scan;
    m_isScanOpen = scan;
    Q_EMIT scanTransponderChanged(scan);
}

QString LBAPI::cardWarning() const
{
    // A screen on which nobody holds up cards must not complain, but for being one too many.
    return expectsCards() || m_cardReadiness.fault() == CardReadiness::Waiting
        ? m_cardReadiness.warning()
        : QString();
}

bool LBAPI::expectsCards() const
{
    return config()->attendanceEnabled() || config()->tallyxMode() != Config::TallyxDisabled
        || m_scanTransponder;
}

int LBAPI::inactivityTimerRemaining() const
{
    return m_inactivityTimer ? m_inactivityTimer->remainingTime() : -1;
}

void LBAPI::setInactivityTimer(QTimer *timer)
{
    m_inactivityTimer = timer;
}

QString LBAPI::requestFailure(int httpStatus) const
{
    return Reason::ofStatus(httpStatus);
}

void LBAPI::emitReset()
{
    m_notifications.endOldest();
    Q_EMIT reset();
}

void LBAPI::refreshEventData()
{
    m_retryTimer.stop();
    auto *fresh = new EventData(this);
    const bool hadSchedule = m_eventData;
    const bool isFirst = !hadSchedule || m_eventData == m_loading;
    if (m_loading)
        m_loading->discard();
    m_loading = fresh;
    if (isFirst)
        m_eventData = fresh;
    if (isFirst && hadSchedule)
        Q_EMIT eventDataChanged(fresh);
    connectChecked(fresh,
                   SIGNAL(readEventDataFinished(EventData*)), this,
                          SLOT(newEventDataFinishedReading(EventData*)));
}

void LBAPI::addNotification(Notification *n)
{
    QThread *const caller = QThread::currentThread();
    if (n->thread() != thread()) {
        if (n->thread() != caller) {
            qCritical() << "Cannot move Notification living in" << n->thread() << "from" << caller
                        << "to" << thread();
            return;
        }
        if (n->parent())
            n->setParent(nullptr);
        n->moveToThread(thread());
    }
    if (caller != thread()) {
        QMetaObject::invokeMethod(this, "addNotification", Qt::QueuedConnection,
                                  Q_ARG(Notification*, n));
        return;
    }

    n->setParent(this);
    m_notifications.prepend(n);
    connectChecked(n,
                   SIGNAL(removed(Notification*)), this, SLOT(removeNotification(Notification*)));
}

void LBAPI::onTransponderScanned(QString tid)
{
    if (!m_scanTransponder)
        qInfo() << "A card was scanned, but no view waits for it any more.";
    setScanTransponder(false);
    Q_EMIT transponderScanned(tid);
}

void LBAPI::setAccessToken(QString token)
{
    if (m_accessToken == token)
        return;
    m_accessToken = token;
    Q_EMIT accessTokenChanged(token);
}

void LBAPI::newEventDataFinishedReading(EventData *ed)
{
    if (ed == m_loading)
        m_loading.clear();
    Q_EMIT scheduleReadFinished(ed);
    if (ed->error()) {
        m_scheduleAge.onReadFailed();
        retryFirstSchedule();
        if (ed != m_eventData) {
            // It still has to emit dataChanged().
            QMetaObject::invokeMethod(ed, &EventData::discard, Qt::QueuedConnection);
            return;
        }
    } else {
        m_scheduleAge.onReadSucceeded(QDateTime::currentDateTime());
    }

    if (ed != m_eventData) {
        if (m_eventData)
            m_eventData->discard();
        m_eventData = ed;
        Q_EMIT eventDataChanged(ed);
    }
    config()->emitLocationChanged();
}

/** A screen is often on before its network. Its first schedule does not wait for the refresh grid.
 */
void LBAPI::retryFirstSchedule()
{
    constexpr auto longestDelay = 60s;

    if (m_scheduleAge.hasSchedule())
        return;
    m_retryTimer.start(m_retryDelay);
    m_retryDelay = std::min<std::chrono::seconds>(2 * m_retryDelay, longestDelay);
}

void LBAPI::removeNotification(Notification *n)
{
    if (!m_notifications.removeFirst(n))
        return;
    // The view still reads the notification while it fades out.
    QTimer::singleShot(1000ms, n, &QObject::deleteLater);
}

/**
 * Keeps the day and its times true when the clock or the time zone was set. While the day is still
 * wrong it fetches after 1, 2, 4, 8 … minutes: a service that fails is not asked more and more.
 */
void LBAPI::followClock(bool isZoneNew)
{
    const EventData *newest = m_loading ? m_loading : m_eventData;
    const QDate day = config()->scheduleDate();
    m_wrongDayMinutes = newest && newest->day() != day ? m_wrongDayMinutes + 1 : 0;
    const bool isTime = m_wrongDayMinutes > 0 && qPopulationCount(m_wrongDayMinutes) == 1;
    // A new zone moves every time that the document gives with an offset.
    if (newest && (isZoneNew || isTime)) {
        qInfo() << (m_wrongDayMinutes > 1 ? "Still another day, fetching the schedule of"
                                          : "The day or the time zone has changed, fetching the "
                                            "schedule of")
                << day;
        refreshEventData();
    }
    m_boundaryTimer.lookAtClock();
}

EventLocation *LBAPI::findLocation(qint64 id)
{
    if (id <= 0)
        qCritical() << "Plenar location ID not set";
    return eventData()->location(id);
}
