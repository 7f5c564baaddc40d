// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/recordqueue.h"

#include "base/exceptions.h"
#include "base/reason.h"
#include "notifications/notificationhandle.h"

#include <QDebug>
#include <QFile>

#include <algorithm>
#include <cerrno>

using namespace std::chrono_literals;

namespace {

constexpr auto deferral = 10s;
constexpr auto freshRetry = 60s;
constexpr auto resendRetry = 300s;
constexpr auto maxPause = 1h; // between passes: a folder may have been mounted late
constexpr auto longSilence = 1h;
constexpr int maxInFlight = 4;
constexpr int maxMisses = 3; // in a row, then the pass ends
constexpr int maxFailures = 5; // likewise

} // namespace

RecordQueue::RecordQueue(const Spool &spool, QObject *parent)
    : QObject(parent)
    , m_spool(spool)
    , m_gate(spool, this)
    , m_remover(this)
    , m_ledger(m_spool, this)
    , m_timer(this)
{
    m_spool.removeLeftovers();
    m_lastCompletion.start();
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &RecordQueue::process);
    connect(this, &RecordQueue::freshChanged, this, &RecordQueue::proceed);
    connect(&m_ledger, &QueueLedger::changed, this, &RecordQueue::statusChanged);
    connect(&m_gate, &SpoolGate::looked, this, [this] {
        if (keepsRecords())
            processIn(deferral);
        Q_EMIT keepingChanged();
    });
}

bool RecordQueue::hasOutstanding() const
{
    return m_pass || !m_resent.isEmpty() || hasFresh();
}

void RecordQueue::process()
{
    if (m_isStopped)
        return;
    if (hasOutstanding()) {
        qDebug() << "ongoing requests - queue processing deferred";
        processIn(deferral);
        return;
    }
    m_ledger.recount();
    if (!m_gate.look() || !canSend() || !m_spool.canBeListed()) {
        processIn(resendRetry);
        Q_EMIT passFinished();
        return;
    }
    m_timer.stop();
    m_pass.emplace(m_spool.folder(), m_lastTried);
    m_misses = 0;
    m_failures = 0;
    m_hasGivenUp = false;
    proceed();
}

void RecordQueue::processIn(std::chrono::milliseconds delay)
{
    if (!m_timer.isActive() || m_timer.remainingTimeAsDuration() > delay)
        m_timer.start(delay);
}

void RecordQueue::processSoon()
{
    processIn(freshRetry);
}

std::optional<Failure> RecordQueue::refusal()
{
    if (keepsRecords() || m_gate.look())
        return {};
    return Failure { QStringLiteral("the spool directory is not writable"), Reason::ofDisk(EROFS),
                     AttendanceErrorException::notificationType };
}

void RecordQueue::stop()
{
    m_isStopped = true;
}

/** Lets the running pass go on, in the next turn of the event loop. */
void RecordQueue::proceed()
{
    if (!m_pass || m_isScheduled)
        return;
    m_isScheduled = true;
    QMetaObject::invokeMethod(this, &RecordQueue::sendNext, Qt::QueuedConnection);
}

void RecordQueue::sendNext()
{
    m_isScheduled = false;
    if (m_hasGivenUp || m_pass->isOver()) {
        if (m_resent.isEmpty())
            endPass();
        return;
    }
    if (hasFresh() || m_resent.size() == maxInFlight)
        return; // a person's record must not wait for the pass
    const QString path = m_pass->next();
    if (!path.isEmpty() && m_backOff.isDue(path))
        tryResend(path);
    proceed();
}

void RecordQueue::tryResend(const QString &path)
{
    // The directory iterator reads one name ahead, so the file may be gone by now.
    if (m_isStopped || m_resent.contains(path) || isFresh(path) || !QFile::exists(path))
        return;
    m_lastTried = path;
    const auto failure = catchFailure([this, &path] { resend(path); });
    if (!failure) {
        m_resent.insert(path);
        return;
    }
    onResendFailed(path, RecordOutcome { failure });
    if (!failure->isTemporary()) // the file is no record, which says nothing about the others
        m_backOff.shelve(path);
}

void RecordQueue::endResend(const QString &path, const RecordOutcome &outcome)
{
    m_resent.remove(path);
    m_misses = outcome.hasResponse ? 0 : m_misses + 1;
    m_failures = outcome.failure ? m_failures + 1 : 0;
    if (outcome.failure) {
        onResendFailed(path, outcome);
    } else {
        m_backOff.forget(path);
        m_ledger.onAccepted();
    }
    if (!m_hasGivenUp && (m_misses == maxMisses || m_failures == maxFailures)) {
        m_hasGivenUp = true;
        qInfo() << (outcome.hasResponse ? "The service accepts nothing,"
                                        : "The service does not answer,")
                << "the rest of the queue waits.";
    }
    proceed();
}

/** Tells nobody, since nobody waits: the record stays for a later pass. */
void RecordQueue::onResendFailed(const QString &path, const RecordOutcome &outcome)
{
    logResendFailure(*outcome.failure);
    m_ledger.onFailed(path, outcome);
    m_backOff.postpone(path);
    processIn(resendRetry);
}

void RecordQueue::endPass()
{
    m_pass.reset();
    m_backOff.forgetGone();
    processIn(std::clamp<std::chrono::milliseconds>(m_backOff.untilNextDue().value_or(maxPause),
                                                    resendRetry, maxPause));
    Q_EMIT passFinished();
}

bool RecordQueue::complete(const QString &path, SpoolRemover::Sync sync)
{
    if (path.isEmpty())
        return true; // the record never was on disk
    // The service is back after an outage: the others must not sit out their waits.
    if (m_lastCompletion.hasExpired(std::chrono::milliseconds(longSilence).count())) {
        m_backOff.clear();
        processIn(deferral);
    }
    m_lastCompletion.start();
    const auto failure = m_remover.remove(path, sync);
    if (!failure) {
        m_ledger.onGone(path);
        return true;
    }
    NotificationHandle::showFatalError(tr("FATAL ERROR"), logRemovalFailure(*failure));
    Q_EMIT fatalStop();
    return false;
}
