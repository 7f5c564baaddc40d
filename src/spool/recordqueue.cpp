// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/recordqueue.h"

#include "notifications/notificationhandle.h"

#include <QDebug>
#include <QFile>

using namespace std::chrono_literals;

namespace {

constexpr auto resendRetry = 300s;
constexpr int maxInFlight = 4;
constexpr int maxMisses = 3; // in a row, then the pass ends

} // namespace

RecordQueue::RecordQueue(const Spool &spool, QObject *parent)
    : QObject(parent)
    , m_spool(spool)
    , m_remover(this)
{
    m_spool.removeLeftovers();
}

bool RecordQueue::hasOutstanding() const
{
    return m_pass || !m_resent.isEmpty() || hasFresh();
}

void RecordQueue::setPaused(bool paused)
{
    m_isPaused = paused;
    proceed();
}

void RecordQueue::startPass()
{
    if (!canSend() || !m_spool.canBeListed()) {
        Q_EMIT retryWanted(resendRetry);
        Q_EMIT passFinished();
        return;
    }
    m_pass = std::make_unique<QDirIterator>(m_spool.folder(), Spool::recordFilter);
    m_misses = 0;
    proceed();
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
    if (m_misses >= maxMisses || !m_pass->hasNext()) {
        if (!m_resent.isEmpty())
            return;
        m_pass.reset();
        Q_EMIT passFinished();
        return;
    }
    if (m_isPaused || m_resent.size() == maxInFlight)
        return;
    tryResend(m_pass->next());
    proceed();
}

void RecordQueue::tryResend(const QString &path)
{
    // The directory iterator reads one name ahead, so the file may be gone by now.
    if (m_isStopped || m_resent.contains(path) || isFresh(path) || !QFile::exists(path))
        return;
    if (const auto failure = catchFailure([this, &path] { resend(path); }))
        onResendFailed(*failure);
    else
        m_resent.insert(path);
}

void RecordQueue::endResend(const QString &path, const RecordOutcome &outcome)
{
    if (outcome.failure)
        onResendFailed(*outcome.failure);
    m_resent.remove(path);
    m_misses = outcome.hasResponse ? 0 : m_misses + 1;
    if (m_misses == maxMisses)
        qInfo() << "The service does not answer, the rest of the queue waits.";
    proceed();
}

/** Tells nobody, since nobody waits: the record stays for a later pass. */
void RecordQueue::onResendFailed(const Failure &failure)
{
    logResendFailure(failure);
    Q_EMIT retryWanted(resendRetry);
}

bool RecordQueue::complete(const QString &path, SpoolRemover::Sync sync)
{
    if (path.isEmpty())
        return true; // the record never was on disk
    const auto failure = m_remover.remove(path, sync);
    if (!failure)
        return true;
    NotificationHandle::showFatalError(tr("FATAL ERROR"), logRemovalFailure(*failure));
    Q_EMIT fatalStop();
    return false;
}
