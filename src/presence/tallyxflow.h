// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "base/failure.h"
#include "net/requestlimits.h"
#include "presence/tallyxlogentity.h"
#include "presence/tallyxnotice.h"

#include <QNetworkReply>
#include <QObject>
#include <QPointer>

class QNetworkAccessManager;

/**
 * One presence booking, from the card to the acknowledgement of the service: saves the record,
 * queries the person's status, lets the person choose the direction, and posts the record. A slot
 * called in the wrong state does nothing.
 *
 * Lives in the attendance worker's thread; its notification lives in the GUI thread.
 */
class TallyxFlow : public QObject
{
    Q_OBJECT

public:
    /** @p manager is not owned and outlives this object. */
    TallyxFlow(quint64 transponderId, QNetworkAccessManager &manager, const RequestLimits &limits,
               QObject *parent = nullptr);
    /** Withdraws an open question; the record stays in the spool. */
    ~TallyxFlow() override;

    /** The type of a record before the service or the person has chosen a direction. */
    [[nodiscard]] static TallyxLogEntity::Type initialType();
    /** Message for the person: the record waits in the queue, or the staff must help. */
    [[nodiscard]] static QString failureText(bool isQueued, const Failure &failure);

    /** Saves the record and queries the status. */
    void start();
    /** Ends a flow whose record has not been posted yet, and withdraws its question. */
    void abandon();
    /** True while a request is in flight. */
    [[nodiscard]] bool hasRequest() const { return m_state == Querying || m_state == Sending; }
    /** True once the service has booked the record. */
    [[nodiscard]] bool isAcknowledged() const { return m_state == Answered; }
    /** The file with the record; empty if it was never saved. */
    [[nodiscard]] QString spoolPath() const { return m_record.spoolPath(); }
    /** True if that file exists. */
    [[nodiscard]] bool isOnDisk() const { return m_record.isOnDisk(); }
    /** Why the flow failed; no failure if the record was not posted or was booked. */
    [[nodiscard]] const RecordOutcome &outcome() const { return m_outcome; }

Q_SIGNALS:
    void stateChanged();
    /** The record has come to disk. */
    void saved();
    /** The service has booked the record; it must not be sent again. */
    void acknowledged();
    /** The flow is over; the queue sends a record that was not acknowledged. */
    void ended();

private Q_SLOTS:
    void onGetStatusFinished();
    void onButtonClicked(int idx);
    void postLog();
    void onPostLogFinished();
    void onNotificationRemoved();

private:
    enum State { Idle, Querying, Deciding, Sending, Answered, Failed };

    template <typename Body> void failOnException(Body body);
    void decide(QNetworkReply &reply);
    void changeType(TallyxLogEntity::Type type);
    void saveChoice();
    [[nodiscard]] bool isChoiceOnDisk() const;
    void removeRecord();
    void fail(const Failure &failure);
    void end(State state);
    void setState(State state);

    QNetworkAccessManager &m_manager;
    RequestLimits m_limits;
    TallyxLogEntity m_record;
    TallyxNotice m_notice;
    QPointer<QNetworkReply> m_reply;
    State m_state = Idle;
    RecordOutcome m_outcome;
};
