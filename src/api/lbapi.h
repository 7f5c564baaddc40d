// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "api/cardreadiness.h"
#include "api/roomreadiness.h"
#include "base/clockwatch.h"
#include "config/config.h"
#include "notifications/notification.h"
#include "notifications/notificationboard.h"
#include "notifications/notificationsmodel.h"
#include "schedule/eventboundarytimer.h"
#include "schedule/eventdata.h"
#include "schedule/scheduleage.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <atomic>
#include <chrono>

/**
 * The views' interface to the program: settings, schedule and notifications.
 *
 * QML sees it as the singleton LBAPI. It owns the notifications and the current schedule, which it
 * replaces with each good refresh. Lives in the GUI thread; only addNotification() and
 * takeScan() may be called from other threads.
 */
class LBAPI : public QObject, public NotificationBoard
{
    Q_OBJECT
    Q_PROPERTY(bool debug READ isDebug CONSTANT)
    Q_PROPERTY(Config *config READ config CONSTANT)
    Q_PROPERTY(EventData *eventData READ eventData NOTIFY eventDataChanged)
    Q_PROPERTY(NotificationsModel *notifications READ notifications NOTIFY notificationsChanged)
    Q_PROPERTY(bool scanTransponder READ scanTransponder WRITE setScanTransponder NOTIFY
                   scanTransponderChanged)
    Q_PROPERTY(QString accessToken READ accessToken NOTIFY accessTokenChanged)
    Q_PROPERTY(QString scheduleAsOf READ scheduleAsOf NOTIFY scheduleAsOfChanged)
    Q_PROPERTY(QString cardWarning READ cardWarning NOTIFY cardWarningChanged)
    Q_PROPERTY(QString roomWarning READ roomWarning NOTIFY roomWarningChanged)

public:
    explicit LBAPI(QObject *parent = nullptr);

    /** The process-wide object, child of the application object, created on first use. */
    static LBAPI *instance();

    /** True for the layout on a developer's desktop; always false in this build. */
    [[nodiscard]] bool isDebug() const { return false; }
    [[nodiscard]] Config *config() const;
    /** The current schedule; the first call starts the first download. */
    [[nodiscard]] EventData *eventData();
    [[nodiscard]] NotificationsModel *notifications() override { return &m_notifications; }
    /** True if a view waits for the next card. */
    [[nodiscard]] bool scanTransponder() const { return m_scanTransponder; }
    void setScanTransponder(bool scan);
    /** The current bearer token; empty before the first. */
    [[nodiscard]] QString accessToken() const { return m_accessToken; }
    /** "As of …" while the shown schedule is out of date, else empty. */
    [[nodiscard]] QString scheduleAsOf() const { return m_scheduleAge.asOf(); }
    /** Why cards are not read, if the settings or a view make people hold up cards; else empty. */
    [[nodiscard]] QString cardWarning() const;
    /** Why the schedule view has no room to show; empty if it has one. */
    [[nodiscard]] QString roomWarning() const { return m_roomReadiness.warning(); }
    /** True if the settings or a view make people hold up cards. */
    [[nodiscard]] bool expectsCards() const;
    /** Hears of the reader and of the end of logging. */
    [[nodiscard]] CardReadiness *cardReadiness() { return &m_cardReadiness; }

    /** Milliseconds until the start view returns; -1 if no timer is set or it is not running. */
    Q_INVOKABLE int inactivityTimerRemaining() const;
    void setInactivityTimer(QTimer *timer);
    /** Why a request of a view failed, for the person; see Reason::ofStatus(). */
    Q_INVOKABLE QString requestFailure(int httpStatus) const;

    /**
     * True for the first card after a view has asked for one; that card goes to
     * onTransponderScanned(). Call it where cards are read: the next card may arrive before the
     * GUI thread hears of this one.
     */
    [[nodiscard]] bool takeScan() { return m_isScanOpen.exchange(false); }

Q_SIGNALS:
    /** Asks the views to return to their start state. */
    void reset();
    void eventDataChanged(EventData *v);
    void notificationsChanged();
    void scanTransponderChanged(bool b);
    void transponderScanned(QString tid);
    void accessTokenChanged(QString token);
    void scheduleAsOfChanged();
    void cardWarningChanged();
    void roomWarningChanged();
    /** A download of the schedule has succeeded or failed; it need not become the current one. */
    void scheduleReadFinished(EventData *v);

public Q_SLOTS:
    /** Emits reset() and ends the oldest of too many lasting notifications. */
    void emitReset();
    /**
     * Starts the download of a new schedule, which replaces the current one once it is read. Ends
     * the download under way.
     */
    void refreshEventData();
    /**
     * Shows @p n as the newest notification and takes ownership. Call it in the thread that created
     * @p n.
     */
    void addNotification(Notification *n) override;
    /** Ends the scan mode and announces the card @p tid. */
    void onTransponderScanned(QString tid);
    void setAccessToken(QString token);

private Q_SLOTS:
    void newEventDataFinishedReading(EventData *ed);
    void removeNotification(Notification *n);
    void followClock(bool isZoneNew);

private:
    void retryFirstSchedule();
    [[nodiscard]] QObject *context() override { return this; }
    EventLocation *findLocation(qint64 id);

    QPointer<EventData> m_eventData;
    QPointer<EventData> m_loading; ///< the download under way; m_eventData if it is the first one
    NotificationsModel m_notifications;
    bool m_scanTransponder = false;
    QString m_accessToken;
    QPointer<QTimer> m_inactivityTimer;
    EventBoundaryTimer m_boundaryTimer;
    ScheduleAge m_scheduleAge;
    CardReadiness m_cardReadiness;
    RoomReadiness m_roomReadiness;
    ClockWatch m_clockWatch;
    QTimer m_retryTimer;
    std::chrono::seconds m_retryDelay { 5 };
    quint32 m_wrongDayMinutes = 0; ///< since the shown schedule is of another day
    std::atomic<bool> m_isScanOpen = false; ///< true until a card takes the scan
};
