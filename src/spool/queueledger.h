// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "spool/queuestatus.h"

#include <QHash>
#include <QObject>
#include <QTimer>

class Spool;
struct RecordOutcome;

/**
 * Keeps the books of a queue for its status. Counts records as they come and go, and looks into the
 * folder only when it is told to, or when the oldest record has gone.
 *
 * Lives in the queue's thread.
 */
class QueueLedger : public QObject
{
    Q_OBJECT

public:
    /** Of the records that failed; a service that refuses everything must not fill the memory. */
    static constexpr int maxFailed = 1000;

    /** @p spool is not owned and outlives this object. */
    explicit QueueLedger(const Spool &spool, QObject *parent = nullptr);

    /** The file @p path has come into the spool. */
    void onSaved(const QString &path);
    /** The file @p path has gone. */
    void onGone(const QString &path);
    /** The service has accepted a record. */
    void onAccepted();
    /** The record in @p path was not accepted; the path is empty if it is not on disk. */
    void onFailed(const QString &path, const RecordOutcome &outcome);
    /** Counts the files anew before the next changed(). */
    void recount();

Q_SIGNALS:
    /** At most once a second. */
    void changed(const QueueStatus &status);

private:
    void schedule();
    void publish();
    void count();

    const Spool &m_spool;
    QueueStatus m_status;
    QString m_oldest; ///< file
    QHash<QString, FailedRecord> m_failed; ///< by file
    QTimer m_timer;
    bool m_mustCount = true;
};
