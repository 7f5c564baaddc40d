// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/requestlimits.h"
#include "spool/spoolremover.h"

#include <QObject>
#include <QPointer>
#include <QSet>

#include <chrono>
#include <exception>

class QNetworkAccessManager;
class QNetworkReply;
class SpoolPass;
class TallyxFlow;
class TallyxLogEntity;

/**
 * The presence bookings of the moment, each a flow of its own, and the pass over the spool that
 * sends what flows have left. A record that a person still decides on is never sent by the pass.
 *
 * Lives in the attendance worker's thread.
 */
class TallyxQueue : public QObject
{
    Q_OBJECT

public:
    /** @p manager is not owned and outlives this object. */
    TallyxQueue(QNetworkAccessManager &manager, const RequestLimits &limits,
                QObject *parent = nullptr);
    ~TallyxQueue() override;

    /** Begins a booking for the card with this id. */
    void begin(quint64 transponderId);
    /** Whether a request is under way, of a booking or of the spool. */
    [[nodiscard]] bool isBusy() const;
    /** Whether a request of a booking is under way, for which the pass makes room. */
    [[nodiscard]] bool hasFresh() const;
    /** While held the pass sends nothing more. */
    void setHeld(bool held);
    /** For good: nothing is sent or asked any more. */
    void stop();
    /** Sends what waits in the spool; passFinished() follows. Not while isBusy(). */
    void startPass();

Q_SIGNALS:
    /** hasFresh() may have changed. */
    void freshChanged();
    /** The spool should be looked at again, after this time at the latest. */
    void retryWanted(std::chrono::milliseconds delay);
    void passFinished();
    /** A record that was sent can not be removed: nothing may be sent any more. */
    void fatalStop();

private:
    void postpone(quint64 transponderId);
    [[nodiscard]] bool resend(const QString &path);
    void onResent(TallyxLogEntity *record, QNetworkReply &reply);
    void onResendFailed(const std::exception_ptr &exception);
    void onFlowEnded(TallyxFlow *flow);
    void complete(const QString &path, SpoolRemover::Sync sync);
    [[nodiscard]] bool isInUse(const QString &path) const;

    QNetworkAccessManager &m_manager;
    RequestLimits m_limits;
    SpoolRemover m_remover;
    QPointer<SpoolPass> m_pass;
    QSet<TallyxFlow *> m_flows;
    QSet<TallyxLogEntity *> m_resent; ///< under way
    bool m_isHeld = false;
    bool m_isStopped = false; ///< for good
};
