// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "presence/tallyxqueue.h"

#include "net/accesstoken.h"
#include "net/errortext.h"
#include "notifications/noticelimits.h"
#include "notifications/notificationhandle.h"
#include "presence/tallyxflow.h"
#include "presence/tallyxservice.h"

#include <QDebug>
#include <QNetworkReply>

#include <algorithm>

TallyxQueue::TallyxQueue(QNetworkAccessManager &manager, const RequestLimits &limits,
                         QObject *parent)
    : RecordQueue(tallyxSpool(), parent)
    , m_manager(manager)
    , m_limits(limits)
{
}

TallyxQueue::~TallyxQueue()
{
    // Delete the flows while this object is complete: their signals call it.
    const auto flows = m_flows;
    for (TallyxFlow *flow : flows) {
        flow->disconnect(this);
        delete flow;
    }
}

void TallyxQueue::begin(quint64 transponderId)
{
    if (const auto failure = refusal()) {
        report(false, *failure);
        return;
    }
    if (m_flows.size() >= noticelimits::maxCards) {
        postpone(transponderId);
        return;
    }
    auto *flow = new TallyxFlow(transponderId, m_manager, m_limits, this);
    m_flows.insert(flow);
    connect(flow, &TallyxFlow::stateChanged, this, &TallyxQueue::freshChanged);
    connect(flow, &TallyxFlow::acknowledged, this, [this, flow] {
        completeBooking(flow->spoolPath(), SpoolRemover::Sync::AtOnce);
        ledger().onAccepted();
    });
    connect(flow, &TallyxFlow::saved, this, [this, flow] { ledger().onSaved(flow->spoolPath()); });
    connect(flow, &TallyxFlow::ended, this, [this, flow] { onFlowEnded(flow); });
    flow->start();
}

/** Saves the record for a pass without asking: too many questions are already open. */
void TallyxQueue::postpone(quint64 transponderId)
{
    TallyxLogEntity record(transponderId, TallyxFlow::initialType());
    const auto failure = catchFailure([&record] { record.save(); });
    if (failure) {
        report(false, *failure);
        return;
    }
    ledger().onSaved(record.spoolPath());
    qWarning() << "Too many presence questions at once, leaving the record to the queue.";
    processSoon();
    report(true, Failure::temporary({}, tr("Too many cards at once.")));
}

/** Tells the person, without a flow, that the record waits or that there is none. */
void TallyxQueue::report(bool isQueued, const Failure &failure)
{
    if (!isQueued) {
        qCritical().noquote() << "Error logging presence:" << failure.logText();
        ledger().onFailed({}, { failure });
    }
    NotificationHandle::showError(tr("Presence"), TallyxFlow::failureText(isQueued, failure),
                                  noticelimits::afterFailureMs(isQueued));
}

bool TallyxQueue::hasFresh() const
{
    return std::any_of(m_flows.begin(), m_flows.end(),
                       [](const TallyxFlow *flow) { return flow->hasRequest(); });
}

void TallyxQueue::stop()
{
    RecordQueue::stop();
    const auto flows = m_flows;
    for (TallyxFlow *flow : flows)
        flow->abandon();
}

bool TallyxQueue::isFresh(const QString &path) const
{
    return std::any_of(m_flows.begin(), m_flows.end(),
                       [&path](const TallyxFlow *flow) { return flow->spoolPath() == path; });
}

bool TallyxQueue::canSend() const
{
    if (!accesstoken::current().isEmpty() || spool().count() == 0)
        return true;
    // One log line instead of one per record.
    qWarning() << "Error logging presence: Authentication unavailable.";
    return false;
}

void TallyxQueue::resend(const QString &path)
{
    TallyxLogEntity record(path);
    record.setTransmissionDelay(record.age());
    QNetworkReply *reply = tallyxservice::postLog(m_manager, record, m_limits);
    reply->setParent(this);
    connect(reply, &QNetworkReply::finished, this, [this, path, reply] { onResent(path, *reply); });
}

void TallyxQueue::onResent(const QString &path, QNetworkReply &reply)
{
    reply.deleteLater();
    RecordOutcome outcome = outcomeOf(reply);
    outcome.failure = catchFailure([&] { (void)tallyxservice::readAcknowledgement(reply); });
    if (!outcome.failure)
        completeBooking(path, SpoolRemover::Sync::Soon);
    endResend(path, outcome);
}

void TallyxQueue::logResendFailure(const Failure &failure) const
{
    qWarning().noquote() << "Error logging presence:" << failure.logText();
}

void TallyxQueue::completeBooking(const QString &path, SpoolRemover::Sync sync)
{
    if (complete(path, sync))
        qDebug() << "Presence logged:" << path;
}

QString TallyxQueue::logRemovalFailure(const Failure &failure) const
{
    qCritical() << "FATAL ERROR" << failure.text;
    return failure.below(
        tr("Failed to remove a log request from the queue. Logging has been stopped."));
}

void TallyxQueue::onFlowEnded(TallyxFlow *flow)
{
    m_flows.remove(flow);
    flow->deleteLater();
    if (flow->outcome().failure)
        ledger().onFailed(flow->isOnDisk() ? flow->spoolPath() : QString(), flow->outcome());
    // The flow removes a record that contradicts the person's choice.
    if (!flow->isAcknowledged() && !flow->spoolPath().isEmpty() && !flow->isOnDisk())
        ledger().onGone(flow->spoolPath());
    if (!flow->isAcknowledged())
        processSoon();
    Q_EMIT freshChanged();
}
