// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/requestlimits.h"
#include "presence/tallyxlogentity.h"
#include "presence/tallyxnotice.h"

#include <QNetworkReply>
#include <QObject>
#include <QPointer>

#include <exception>

class QNetworkAccessManager;

/**
 * One presence booking, from the card to the service's acknowledgement: asks for the person's
 * status, lets the person choose the direction, and posts the record, which is on disk all the
 * while. A slot that is called outside its state does nothing.
 *
 * Lives in the attendance worker's thread; its notification in the GUI thread.
 */
class TallyxFlow : public QObject
{
    Q_OBJECT

public:
    /** @p manager is not owned and outlives this object. */
    TallyxFlow(quint64 transponderId, QNetworkAccessManager &manager, const RequestLimits &limits,
               QObject *parent = nullptr);
    /** Takes a question back that nobody listens to any more; the record stays in the spool. */
    ~TallyxFlow() override;

    /** What is booked of a card as long as neither service nor person have said anything. */
    [[nodiscard]] static TallyxLogEntity::Type firstType();
    /** What a person is told of a failure: whether the record waits, or the staff has to know. */
    [[nodiscard]] static QString failureText(bool isQueued, const QString &reason);

    /** Saves the record and asks for the status. */
    void start();
    /** Ends a flow that nobody is to answer any more, and takes its question back. */
    void abandon();
    /** Whether the service has been asked something and has not answered yet. */
    [[nodiscard]] bool hasRequest() const { return m_state == Querying || m_state == Sending; }
    /** Whether the service has booked the record. */
    [[nodiscard]] bool isAcknowledged() const { return m_state == Answered; }
    /** The file with the record; empty if it could not be saved. */
    [[nodiscard]] QString spoolPath() const { return m_record.spoolPath(); }

Q_SIGNALS:
    void stateChanged();
    /** The service has booked the record, which must not be sent again. */
    void acknowledged();
    /** Nothing more will come of this flow; a record that was not acknowledged is left to others.
     */
    void ended();

private Q_SLOTS:
    void onGetStatusFinished();
    void onButtonClicked(int idx);
    void postLog();
    void onPostLogFinished();
    void onNotificationRemoved();

private:
    enum State { Idle, Querying, Deciding, Sending, Answered, Failed };

    template <typename Function> void guarded(Function function);
    void decide(QNetworkReply &reply);
    void changeType(TallyxLogEntity::Type type);
    void trySave();
    [[nodiscard]] bool keepsRecord();
    void fail(const std::exception_ptr &exception);
    void end(State state);
    void setState(State state);

    QNetworkAccessManager &m_manager;
    RequestLimits m_limits;
    TallyxLogEntity m_record;
    TallyxNotice m_notice;
    QPointer<QNetworkReply> m_reply;
    State m_state = Idle;
};
