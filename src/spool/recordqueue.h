// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "base/failure.h"
#include "spool/queueledger.h"
#include "spool/recordbackoff.h"
#include "spool/spool.h"
#include "spool/spoolgate.h"
#include "spool/spoolremover.h"
#include "spool/spoolround.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <chrono>
#include <optional>

/**
 * Base of the attendance and the presence queue: owns a spool, sends its records again in passes,
 * and stops for good when a sent record cannot be removed. A record is *fresh* while a person waits
 * for it, and *outstanding* while a request for it is in flight; a pass sends no fresh record.
 *
 * A pass starts where the last one ended, and ends early when the service fails. It returns to the
 * event loop after each record. While the spool cannot be used no pass runs: what it sends could
 * not be removed and would be sent again.
 *
 * Lives in the attendance worker's thread.
 */
class RecordQueue : public QObject
{
    Q_OBJECT

public:
    /** True while a request for a fresh record is in flight; a pass then sends nothing. */
    [[nodiscard]] virtual bool hasFresh() const = 0;
    /** True while any request is in flight or a pass is running. */
    [[nodiscard]] bool hasOutstanding() const;
    /** False while the spool cannot be used, so that no record can be kept. */
    [[nodiscard]] bool keepsRecords() const { return m_gate.isOpen(); }
    /** Starts a pass, and passFinished() follows; with requests in flight, tries again later. */
    void process();
    /** Calls process() after @p delay, or earlier if that is already planned. */
    void processIn(std::chrono::milliseconds delay);
    /** The same after the failure of a fresh record. */
    void processSoon();
    /** Ends all sending for good. */
    virtual void stop();

Q_SIGNALS:
    /** hasFresh() may have changed. */
    void freshChanged();
    void passFinished();
    /** keepsRecords() may have changed. */
    void keepingChanged();
    /** A sent record cannot be removed, so stop() is due; a notice tells the person. */
    void fatalStop();
    /** At most once a second. */
    void statusChanged(const QueueStatus &status);

protected:
    explicit RecordQueue(const Spool &spool, QObject *parent = nullptr);

    [[nodiscard]] const Spool &spool() const { return m_spool; }
    /** To be told of what happens to fresh records; resends and removals by complete() it knows. */
    [[nodiscard]] QueueLedger &ledger() { return m_ledger; }

    /** Why a card cannot be logged now, which the person must hear; nothing if it can. */
    [[nodiscard]] std::optional<Failure> refusal();

    /** True if the file @p path belongs to a fresh record. */
    [[nodiscard]] virtual bool isFresh(const QString &path) const = 0;
    /** False, with a log line, if nothing can be sent now. */
    [[nodiscard]] virtual bool canSend() const { return true; }
    /** Sends the record in @p path; endResend() follows. Throws if it is not a record. */
    virtual void resend(const QString &path) = 0;
    virtual void logResendFailure(const Failure &failure) const = 0;
    /** Logs that a sent record cannot be removed, and returns the message for the person. */
    [[nodiscard]] virtual QString logRemovalFailure(const Failure &failure) const = 0;

    /** Number of records of the pass in flight. */
    [[nodiscard]] int resentCount() const { return m_resent.size(); }
    /** Ends the record of a resend(), which the caller has completed if the service accepted it. */
    void endResend(const QString &path, const RecordOutcome &outcome);
    /** Removes a record that must not be sent again; on failure shows a notice, returns false. */
    bool complete(const QString &path, SpoolRemover::Sync sync);

private:
    void proceed();
    void sendNext();
    void tryResend(const QString &path);
    void onResendFailed(const QString &path, const RecordOutcome &outcome);
    void endPass();

    Spool m_spool;
    SpoolGate m_gate;
    SpoolRemover m_remover;
    RecordBackOff m_backOff;
    QueueLedger m_ledger;
    QElapsedTimer m_lastCompletion;
    QTimer m_timer; ///< until the next process()
    std::optional<SpoolRound> m_pass;
    QString m_lastTried; ///< file; the next pass starts after it
    QSet<QString> m_resent; ///< files in flight
    int m_misses = 0; ///< records of the pass in a row without a response
    int m_failures = 0; ///< records of the pass in a row that failed
    bool m_hasGivenUp = false; ///< the running pass
    bool m_isScheduled = false; ///< sendNext()
    bool m_isStopped = false;
};
