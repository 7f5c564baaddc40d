// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/requestlimits.h"

#include <QObject>

class AttendanceNameCache;
class AttendanceQueue;
class TallyxQueue;
struct Failure;
struct QueueStatus;

/**
 * Logs cards with the attendance and the presence service: owns the two queues, which do
 * not wait for each other.
 *
 * Created by the attendance worker in its thread.
 */
class CardLogger : public QObject
{
    Q_OBJECT

public:
    explicit CardLogger(const RequestLimits &limits, QObject *parent = nullptr);
    /** Removes the notices that still wait for a result. */
    ~CardLogger() override;

    /** Logs the card with this id, with the services that the settings enable. */
    void log(quint64 transponderId);
    /** Tells the person at the screen that a card could not be read. */
    void reportFailure(const Failure &failure);
    /** Sends the records of both spools; a queue with requests in flight tries again later. */
    void processQueue();
    /** Sends the presence records that could not be sent without a token. */
    void onTokenAvailable();
    /** False while the records of a service that is in use cannot be kept. */
    [[nodiscard]] bool keepsRecords() const;
    /** True once a sent record could not be removed: nothing is logged any more. */
    [[nodiscard]] bool isStopped() const { return m_isStopped; }

Q_SIGNALS:
    /** isStopped() has become true. */
    void stopped();
    /** keepsRecords() may have changed. */
    void keepingChanged();
    /** How a queue does; each at most once a second. */
    void attendanceStatusChanged(const QueueStatus &status);
    void presenceStatusChanged(const QueueStatus &status);

private:
    void stop();

    AttendanceNameCache *m_names;
    AttendanceQueue *m_attendance;
    TallyxQueue *m_presence;
    bool m_isStopped = false;
};
