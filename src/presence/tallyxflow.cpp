// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "presence/tallyxflow.h"

#include "config/config.h"
#include "config/keys.h"
#include "net/errortext.h"
#include "notifications/noticelimits.h"
#include "presence/tallyxservice.h"
#include "spool/spoolremover.h"

#include <QDebug>

#include <utility>

namespace {

uint confirmTimeout()
{
    return static_cast<uint>(Config::instance()->number(keys::tallyxConfirmTimeout));
}

uint notificationTimeout()
{
    return static_cast<uint>(Config::instance()->number(keys::tallyxNotificationTimeout));
}

} // namespace

TallyxLogEntity::Type TallyxFlow::initialType()
{
    return Config::instance()->tallyxMode() == Config::TallyxContinuous
        ? TallyxLogEntity::CONTINUOUS
        : TallyxLogEntity::AUTO;
}

TallyxFlow::TallyxFlow(quint64 transponderId, QNetworkAccessManager &manager,
                       const RequestLimits &limits, QObject *parent)
    : QObject(parent)
    , m_manager(manager)
    , m_limits(limits)
    , m_record(transponderId, initialType())
    , m_notice(this)
{
}

TallyxFlow::~TallyxFlow()
{
    if (m_state != Answered && m_state != Failed)
        m_notice.withdraw();
}

void TallyxFlow::start()
{
    failOnException([this] {
        m_record.save();
        Q_EMIT saved();
        m_reply = tallyxservice::getStatus(m_manager, m_record);
        m_reply->setParent(this);
        connect(m_reply, &QNetworkReply::finished, this, &TallyxFlow::onGetStatusFinished);
        setState(Querying);
    });
}

void TallyxFlow::abandon()
{
    if (m_state != Querying && m_state != Deciding)
        return;
    m_notice.withdraw();
    end(Failed);
}

void TallyxFlow::onGetStatusFinished()
{
    qDebug() << "onGetStatusFinished()";
    const QPointer<QNetworkReply> reply = std::exchange(m_reply, {});
    reply->deleteLater();
    if (m_state != Querying)
        return;
    failOnException([this, &reply] {
        setState(Deciding);
        decide(*reply);
    });
}

void TallyxFlow::onButtonClicked(int idx)
{
    if (m_state != Deciding)
        return;
    failOnException([this, idx] {
        if (idx == 0)
            changeType(TallyxLogEntity::IN);
        else if (idx == 1)
            changeType(TallyxLogEntity::OUT);
        else
            qWarning() << "onButtonClicked(): unhandled case" << idx;
    });
}

void TallyxFlow::postLog()
{
    qDebug() << "postLog()";
    if (m_state != Deciding)
        return;
    failOnException([this] {
        setState(Sending);
        m_notice.showSent(m_record.type());
        m_record.setLogDelay(m_record.age());
        m_record.setTransmissionDelay(m_record.age());
        saveChoice();
        m_reply = tallyxservice::postLog(m_manager, m_record, m_limits);
        m_reply->setParent(this);
        connect(m_reply, &QNetworkReply::finished, this, &TallyxFlow::onPostLogFinished);
    });
}

void TallyxFlow::onPostLogFinished()
{
    qDebug() << "onPostLogFinished()";
    const QPointer<QNetworkReply> reply = std::exchange(m_reply, {});
    reply->deleteLater();
    if (m_state != Sending)
        return;
    m_outcome = outcomeOf(*reply);
    failOnException([this, &reply] {
        const QJsonObject response = tallyxservice::readAcknowledgement(*reply);
        // First, so that a crash from here on does not send the record again.
        Q_EMIT acknowledged();
        m_notice.acknowledge(tallyxservice::text(response, "message"), notificationTimeout());
        end(Answered);
    });
}

/** Ends the flow if its question is gone; a record that was already posted is not affected. */
void TallyxFlow::onNotificationRemoved()
{
    if (m_state != Querying && m_state != Deciding)
        return;
    qWarning() << "Presence question is gone, leaving the record to the queue.";
    end(Failed);
}

/** Asks the person, with the service's proposal unless the query failed. */
void TallyxFlow::decide(QNetworkReply &reply)
{
    QJsonObject status;
    const auto failure = catchFailure([&] { status = tallyxservice::readStatus(reply); });
    if (failure && !failure->isTemporary()) {
        fail(*failure);
        return;
    }
    QString message = tallyxservice::text(status, "message");
    if (failure) {
        qWarning().noquote() << "Failed to query presence status:" << failure->text;
        message = failure->below(tr("Failed to query your presence status. Please select \"enter\" "
                                    "or \"leave\" below."));
    }
    const QJsonValue isPresent = status.value(QLatin1String("present"));
    if (isPresent.isBool())
        changeType(isPresent.toBool() ? TallyxLogEntity::OUT : TallyxLogEntity::IN);
    m_notice.ask(m_record.type(), tallyxservice::text(status, "name"), message, confirmTimeout());
}

void TallyxFlow::changeType(TallyxLogEntity::Type type)
{
    if (m_record.type() == type)
        return;
    m_record.setType(type);
    saveChoice();
}

/** A failure is only logged, since the choice is posted anyway. */
void TallyxFlow::saveChoice()
{
    if (const auto failure = catchFailure([this] { m_record.save(); }))
        qCritical().noquote() << "Failed to save a presence record again:" << failure->text;
}

/** True if the file on disk holds the person's choice, so that the queue can send it. */
bool TallyxFlow::isChoiceOnDisk() const
{
    return m_record.isOnDisk() && m_record.savedType() == m_record.type();
}

/** A record that contradicts the person's choice must not be booked later. */
void TallyxFlow::removeRecord()
{
    SpoolRemover remover; // syncs when it goes
    if (const auto failure = remover.remove(m_record.spoolPath(), SpoolRemover::Sync::Soon))
        qCritical() << "Failed to remove a presence record that is out of date:" << failure->text;
}

/** Runs the body of a slot; an exception ends the flow. */
template <typename Body> void TallyxFlow::failOnException(Body body)
{
    if (const auto failure = catchFailure(body))
        fail(*failure);
}

void TallyxFlow::fail(const Failure &failure)
{
    qWarning() << "Error logging presence:" << failure.logText();
    m_outcome.failure = failure;
    const bool isQueued = isChoiceOnDisk();
    if (!isQueued && m_record.isOnDisk())
        removeRecord();
    m_notice.fail(failureText(isQueued, failure), noticelimits::afterFailureMs(isQueued));
    end(Failed);
}

QString TallyxFlow::failureText(bool isQueued, const Failure &failure)
{
    return failure.below(
        isQueued
            ? tr("A temporary error occurred. However, the logging of your presence has been "
                 "successfully queued for later execution.")
            : tr("Failed to log your presence. Please call on a staff member in charge and ask for "
                 "instructions."));
}

void TallyxFlow::end(State state)
{
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
    }
    setState(state);
    Q_EMIT ended();
}

void TallyxFlow::setState(State state)
{
    m_state = state;
    Q_EMIT stateChanged();
}
