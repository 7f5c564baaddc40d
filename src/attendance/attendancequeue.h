// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/requestlimits.h"
#include "spool/spool.h"
#include "spool/spoolremover.h"

#include <QObject>
#include <QPointer>
#include <QSet>

#include <chrono>
#include <exception>

class AttendanceNameCache;
class AttendanceRequest;
class AttendanceResponse;
class QNetworkAccessManager;
class SpoolPass;

/**
 * Logs attendance so that no record is lost: each is spooled, sent, and removed once the service
 * has answered; what failed for the time being is sent again by a pass over the spool. Tells the
 * person.
 *
 * Lives in the attendance worker's thread.
 */
class AttendanceQueue : public QObject
{
    Q_OBJECT

public:
    /** @p manager and @p names are not owned and outlive this object. */
    AttendanceQueue(QNetworkAccessManager &manager, AttendanceNameCache &names,
                    const RequestLimits &limits, QObject *parent = nullptr);
    /** Takes the notices away that nobody would end any more; the records stay in the spool. */
    ~AttendanceQueue() override;

    /** Logs the card with this id, now. */
    void log(quint64 transponderId);
    /** Whether a request is under way, of a fresh card or of the spool. */
    [[nodiscard]] bool isBusy() const;
    /** Whether a card's request is under way, for which the pass makes room. */
    [[nodiscard]] bool hasFresh() const;
    /** While held the pass sends nothing more. */
    void setHeld(bool held);
    /** Sends what waits in the spool; passFinished() follows. Not while isBusy(). */
    void startPass();

    /** Tells the person at the screen of a failure that belongs to no record. */
    void reportFailure(const std::exception_ptr &exception);

Q_SIGNALS:
    /** hasFresh() may have changed. */
    void freshChanged();
    /** The spool should be looked at again after this time. */
    void retryWanted(std::chrono::milliseconds delay);
    void passFinished();
    /** A record that was sent can not be removed: nothing may be sent any more. */
    void fatalStop();

private:
    enum class Kind { Fresh, Delayed };

    [[nodiscard]] bool resend(const QString &path);
    void send(AttendanceRequest *request);
    void onSucceeded(AttendanceRequest *request, const AttendanceResponse &response);
    void onFailed(AttendanceRequest *request, Kind kind, const std::exception_ptr &exception);
    void tellPerson(const AttendanceRequest *request, const QString &text, bool isTemporary) const;
    void complete(const AttendanceRequest *request);
    void release(AttendanceRequest *request);
    [[nodiscard]] bool isInUse(const QString &path) const;

    QNetworkAccessManager &m_manager;
    AttendanceNameCache &m_names;
    RequestLimits m_limits;
    Spool m_spool;
    QPointer<SpoolPass> m_pass;
    QSet<AttendanceRequest *> m_underWay;
    bool m_isHeld = false;
    bool m_isStopped = false; ///< for good
    SpoolRemover m_remover;
};
