// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/requestlimits.h"
#include "spool/recordqueue.h"

#include <QSet>

class QNetworkAccessManager;
class QNetworkReply;
class TallyxFlow;

/**
 * Books presence: runs a flow for each card, and sends the records that ended flows have left
 * behind. A record is fresh while its flow runs.
 *
 * Lives in the attendance worker's thread.
 */
class TallyxQueue : public RecordQueue
{
    Q_OBJECT

public:
    /** @p manager is not owned and outlives this object. */
    TallyxQueue(QNetworkAccessManager &manager, const RequestLimits &limits,
                QObject *parent = nullptr);
    ~TallyxQueue() override;

    /** Starts a flow for the card with this id, or tells that its record cannot be kept. */
    void begin(quint64 transponderId);

    [[nodiscard]] bool hasFresh() const override;
    /** Also withdraws the open questions. */
    void stop() override;

protected:
    [[nodiscard]] bool isFresh(const QString &path) const override;
    [[nodiscard]] bool canSend() const override;
    void resend(const QString &path) override;
    void logResendFailure(const Failure &failure) const override;
    [[nodiscard]] QString logRemovalFailure(const Failure &failure) const override;

private:
    void postpone(quint64 transponderId);
    void report(bool isQueued, const Failure &failure);
    void completeBooking(const QString &path, SpoolRemover::Sync sync);
    void onResent(const QString &path, QNetworkReply &reply);
    void onFlowEnded(TallyxFlow *flow);

    QNetworkAccessManager &m_manager;
    RequestLimits m_limits;
    QSet<TallyxFlow *> m_flows;
};
