// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "presence/tallyxqueue.h"

#include "base/exceptions.h"
#include "net/accesstoken.h"
#include "notifications/noticelimits.h"
#include "notifications/notificationhandle.h"
#include "presence/tallyxflow.h"
#include "presence/tallyxservice.h"
#include "spool/spoolpass.h"

#include <QDebug>
#include <QFile>
#include <QNetworkReply>

#include <algorithm>
#include <cxxabi.h>
#include <memory>

using namespace std::chrono_literals;

TallyxQueue::TallyxQueue(QNetworkAccessManager &manager, const RequestLimits &limits,
                         QObject *parent)
    : QObject(parent)
    , m_manager(manager)
    , m_limits(limits)
    , m_remover(this)
{
    tallyxSpool().removeLeftovers();
}

TallyxQueue::~TallyxQueue()
{
    // Now, while this object is whole: flows tell of their end.
    const auto flows = m_flows;
    for (TallyxFlow *flow : flows) {
        flow->disconnect(this);
        delete flow;
    }
}

void TallyxQueue::begin(quint64 transponderId)
{
    if (m_flows.size() >= noticelimits::maxCards) {
        postpone(transponderId);
        return;
    }
    auto *flow = new TallyxFlow(transponderId, m_manager, m_limits, this);
    m_flows.insert(flow);
    connect(flow, &TallyxFlow::stateChanged, this, &TallyxQueue::freshChanged);
    connect(flow, &TallyxFlow::acknowledged, this,
            [this, flow] { complete(flow->spoolPath(), SpoolRemover::Sync::AtOnce); });
    connect(flow, &TallyxFlow::ended, this, [this, flow] { onFlowEnded(flow); });
    flow->start();
}

/** Nobody can be asked that often: the record goes to the pass as the service is to take it. */
void TallyxQueue::postpone(quint64 transponderId)
{
    bool isQueued = false;
    QString reason = TallyxFlow::tr("Too many cards at once.");
    try {
        TallyxLogEntity(transponderId, TallyxFlow::firstType()).save();
        isQueued = true;
        qWarning() << "Too many presence questions at once, leaving the record to the queue.";
        Q_EMIT retryWanted(60s);
    } catch (const AttendanceErrorException &e) {
        qCritical() << "Error logging presence:" << e.what();
        reason = QString::fromUtf8(e.what());
    }
    NotificationHandle::showError(TallyxFlow::tr("Presence"),
                                  TallyxFlow::failureText(isQueued, reason),
                                  isQueued ? noticelimits::temporaryMs : noticelimits::staffMs);
}

void TallyxQueue::stop()
{
    m_isStopped = true;
    const auto flows = m_flows;
    for (TallyxFlow *flow : flows)
        flow->abandon();
}

bool TallyxQueue::isBusy() const
{
    return m_pass || !m_resent.isEmpty() || hasFresh();
}

bool TallyxQueue::hasFresh() const
{
    return std::any_of(m_flows.begin(), m_flows.end(),
                       [](const TallyxFlow *flow) { return flow->hasRequest(); });
}

void TallyxQueue::setHeld(bool held)
{
    m_isHeld = held;
    if (m_pass)
        m_pass->setHeld(held);
}

void TallyxQueue::startPass()
{
    if (accesstoken::current().isEmpty() && tallyxSpool().count() > 0) {
        // Once for all of them.
        qWarning() << "Error logging presence:" << TallyxFlow::tr("Authentication unavailable.");
        Q_EMIT retryWanted(300s);
        Q_EMIT passFinished();
        return;
    }
    if (!tallyxSpool().canBeListed()) {
        Q_EMIT retryWanted(300s);
        Q_EMIT passFinished();
        return;
    }
    m_pass = new SpoolPass(
        tallyxSpool().folder(), [this](const QString &path) { return resend(path); }, this);
    connect(m_pass, &SpoolPass::finished, this, [this] {
        m_pass->deleteLater();
        m_pass.clear();
        Q_EMIT passFinished();
    });
    m_pass->setHeld(m_isHeld);
    m_pass->proceed();
}

/** Sends the record of a file, unless it is in use or can not be read. */
bool TallyxQueue::resend(const QString &path)
{
    // The iterator is a name ahead, of a file that may be gone by now.
    if (m_isStopped || isInUse(path) || !QFile::exists(path))
        return false;
    try {
        auto record = std::make_unique<TallyxLogEntity>(path);
        record->setTransmissionDelay(record->age());
        QNetworkReply *reply = tallyxservice::postLog(m_manager, *record, m_limits);
        TallyxLogEntity *underWay = record.release();
        underWay->setParent(this);
        reply->setParent(underWay);
        m_resent.insert(underWay);
        connect(reply, &QNetworkReply::finished, this,
                [this, underWay, reply] { onResent(underWay, *reply); });
        return true;
    } catch (abi::__forced_unwind &) {
        throw; // the thread is being ended
    } catch (...) {
        onResendFailed(std::current_exception());
        return false;
    }
}

void TallyxQueue::onResent(TallyxLogEntity *record, QNetworkReply &reply)
{
    try {
        (void)tallyxservice::readAcknowledgement(reply);
        complete(record->spoolPath(), SpoolRemover::Sync::Soon);
    } catch (abi::__forced_unwind &) {
        throw; // the thread is being ended
    } catch (...) {
        onResendFailed(std::current_exception());
    }
    m_resent.remove(record);
    record->deleteLater();
    if (m_pass)
        m_pass->noteEnd(reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid());
}

/** Nobody waits: the file stays for a later pass. */
void TallyxQueue::onResendFailed(const std::exception_ptr &exception)
{
    try {
        std::rethrow_exception(exception);
    } catch (const std::exception &e) {
        qWarning() << "Error logging presence:" << e.what();
    } catch (abi::__forced_unwind &) {
        throw; // the thread is being ended
    } catch (...) {
        qWarning() << "Error logging presence: unknown exception";
    }
    Q_EMIT retryWanted(300s);
}

void TallyxQueue::onFlowEnded(TallyxFlow *flow)
{
    m_flows.remove(flow);
    flow->deleteLater();
    if (!flow->isAcknowledged())
        Q_EMIT retryWanted(60s);
    Q_EMIT freshChanged();
}

/** The service has booked the record: nothing of it may be sent again. */
void TallyxQueue::complete(const QString &path, SpoolRemover::Sync sync)
{
    const auto failure = m_remover.remove(path, sync);
    if (!failure) {
        qDebug() << "Presence logged:" << path;
        return;
    }
    qCritical() << "FATAL ERROR" << *failure;
    const NotificationHandle notification(new Notification(
        Notification::ERR, TallyxFlow::tr("FATAL ERROR"),
        TallyxFlow::tr("Failed to remove a log request from the queue. Logging has been stopped."
                       "\n\n%1")
            .arg(*failure),
        0, false, true));
    stop();
    Q_EMIT fatalStop();
}

bool TallyxQueue::isInUse(const QString &path) const
{
    const auto has = [&path](const auto *each) { return each->spoolPath() == path; };
    return std::any_of(m_flows.begin(), m_flows.end(), has)
        || std::any_of(m_resent.begin(), m_resent.end(), has);
}
