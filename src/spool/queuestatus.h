// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QVector>

#include <optional>

/** A record that failed in this run and waits for another try. */
struct FailedRecord
{
    QString name; ///< of its file
    int tries = 0;
    QDateTime lastTry;
    QString answer; ///< why it was not accepted, without anything that came from outside
};

/** How a queue does, as a value for other threads. Holds no card and no person. */
struct QueueStatus
{
    QString folder;
    std::optional<int> waiting; ///< records on disk; nothing until they were counted
    QDateTime oldest; ///< of them; invalid if none waits
    int sent = 0; ///< records that the service has accepted
    int refused = 0; ///< answers that refused a record
    QDateTime lastSuccess; ///< invalid if there was none
    QDateTime lastFailure; ///< likewise
    QString lastReason; ///< of the failure
    QVector<FailedRecord> failed; ///< QueueLedger::maxFailed at most
};

Q_DECLARE_METATYPE(QueueStatus)
