// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "spool/queuestatus.h"
#include "status/runtimefile.h"
#include "status/startcount.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QJsonObject>
#include <QObject>

#include <chrono>
#include <optional>

class EventData;
class QQuickWindow;

/**
 * Collects how the kiosk does, and leaves it in the runtime folder for "--status" and "--spool":
 * status.json, spool.json and starts.json. Holds no card, no person and no secret.
 *
 * The time of status.json is the last sign of life: the file is written when something has changed
 * and touched while all parts answer. Whether a kiosk runs at all is told by its InstanceLock.
 *
 * GUI thread; the slots hear of the workers through queued connections.
 */
class KioskStatus : public QObject
{
    Q_OBJECT

public:
    explicit KioskStatus(QObject *parent = nullptr);

    /** The process-wide object, child of the application object, created on first use. */
    static KioskStatus *instance();

    /** Takes the place of the run before: counts this start and removes its files. */
    void begin();
    /** Notes the frames of @p window. */
    void watchFrames(QQuickWindow *window);
    /** Begins to write, if begin() was called, or later with it. */
    void onFirstFrame();
    /** How often onSignOfLife() comes, and whether the service manager waits for it. */
    void setLifeSigns(std::chrono::milliseconds interval, bool hasWatchdog);
    /** All parts have answered. */
    void onSignOfLife();
    /** A part did not answer in time. */
    void onSilence();
    /** The program ends as it was told to. */
    void end();

public Q_SLOTS:
    void onScheduleRead(EventData *schedule);
    void onTokenObtained(const QDateTime &validUntil, const QString &grant);
    void onTokenFailed(const QString &reason);
    void onConfigurationReceived();
    void onConfigurationFailed(const QString &reason);
    void onReaderOpened(const QString &port);
    void onReaderStateChanged(bool connected);
    void onCardRead();
    /** Each window has a worker of its own, which counts from 0. */
    void onWorkerStarted();
    void onAttendanceStatusChanged(const QueueStatus &status);
    void onPresenceStatusChanged(const QueueStatus &status);
    /** Something that is asked for when the file is written has changed. */
    void update();

private:
    /** When and why something failed last. */
    struct LastFailure
    {
        QDateTime time;
        QString reason;

        LastFailure() = default;
        explicit LastFailure(const QString &why);
        [[nodiscard]] QJsonValue toJson() const;
    };

    /** Adds up what several workers have counted. */
    struct Queue
    {
        QueueStatus now;
        QueueStatus before; ///< as the last worker left it

        void take(const QueueStatus &status);
        void sumUp() { before = now; }
    };

    [[nodiscard]] QJsonObject content();
    [[nodiscard]] QJsonObject parts();
    [[nodiscard]] QJsonObject room() const;
    [[nodiscard]] QJsonObject schedule() const;
    [[nodiscard]] QJsonObject reader() const;
    [[nodiscard]] static QJsonObject queue(const QueueStatus &status, bool isEnabled);
    [[nodiscard]] QJsonObject records() const;
    [[nodiscard]] QDateTime startTime();
    void writeFromNowOn();
    void onQueueChanged();

    RuntimeFile m_status;
    RuntimeFile m_records;
    StartCount m_count;
    QElapsedTimer m_uptime;
    QDateTime m_started;
    bool m_hasBegun = false;
    bool m_hasFrame = false;
    bool m_isWriting = false;

    QDateTime m_scheduleRead;
    int m_events = 0;
    LastFailure m_scheduleFailure;
    QDateTime m_tokenEnd;
    QString m_grant;
    LastFailure m_tokenFailure;
    QDateTime m_configured;
    LastFailure m_configurationFailure;
    QString m_port; ///< of the reader; empty without one
    QDateTime m_lastCard;
    Queue m_attendance;
    Queue m_presence;
    bool m_hasWatchdog = false;
    std::chrono::milliseconds m_lifeInterval { 0 };
    int m_missed = 0;
    QJsonObject m_parts; ///< as last written
    QDateTime m_frame; ///< likewise
};
