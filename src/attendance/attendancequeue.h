// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/requestlimits.h"
#include "spool/recordqueue.h"

#include <QSet>

class AttendanceNameCache;
class AttendanceRequest;
class AttendanceResponse;
class QNetworkAccessManager;

/**
 * Logs attendance: spools the record of each card, sends it, and shows the person the result. The
 * record is removed once the service has responded with a document; after a network or HTTP error
 * it stays for a pass.
 *
 * Lives in the attendance worker's thread.
 */
class AttendanceQueue : public RecordQueue
{
    Q_OBJECT

public:
    /** @p manager and @p names are not owned and outlive this object. */
    AttendanceQueue(QNetworkAccessManager &manager, AttendanceNameCache &names,
                    const RequestLimits &limits, QObject *parent = nullptr);
    /** Removes the notices that still say "Logging attendance..."; the records stay on disk. */
    ~AttendanceQueue() override;

    /** Logs the card with this id at the current time, or tells that it cannot. */
    void log(quint64 transponderId);
    /** Tells the person at the screen about a failure without a record. */
    void reportFailure(const Failure &failure);

    [[nodiscard]] bool hasFresh() const override { return !m_fresh.isEmpty(); }

protected:
    [[nodiscard]] bool isFresh(const QString &path) const override;
    void resend(const QString &path) override;
    void logResendFailure(const Failure &failure) const override;
    [[nodiscard]] QString logRemovalFailure(const Failure &failure) const override;

private:
    void greet(AttendanceRequest *request) const;
    void send(AttendanceRequest *request);
    void onSucceeded(AttendanceRequest *request, const AttendanceResponse &response);
    void onFailed(AttendanceRequest *request, const RecordOutcome &outcome);
    void release(AttendanceRequest *request);
    void logFailure(const Failure &failure);
    [[nodiscard]] static QString failureText(bool isQueued, const Failure &failure);

    QNetworkAccessManager &m_manager;
    AttendanceNameCache &m_names;
    RequestLimits m_limits;
    QSet<AttendanceRequest *> m_fresh; ///< in flight
};
