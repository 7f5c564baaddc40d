// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/recordqueue.h"

#include "notifications/notificationhandle.h"
#include "spool/spoolpass.h"

#include <QFile>

using namespace std::chrono_literals;

namespace {

constexpr auto resendRetry = 300s;

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
    if (m_pass)
        m_pass->setPaused(paused);
}

void RecordQueue::startPass()
{
    if (!canSend() || !m_spool.canBeListed()) {
        Q_EMIT retryWanted(resendRetry);
        Q_EMIT passFinished();
        return;
    }
    m_pass = new SpoolPass(
        m_spool.folder(), [this](const QString &path) { return tryResend(path); }, this);
    connect(m_pass, &SpoolPass::finished, this, &RecordQueue::onPassFinished);
    m_pass->setPaused(m_isPaused);
    m_pass->proceed();
}

void RecordQueue::stop()
{
    m_isStopped = true;
}

bool RecordQueue::tryResend(const QString &path)
{
    // The directory iterator reads one name ahead, so the file may be gone by now.
    if (m_isStopped || m_resent.contains(path) || isFresh(path) || !QFile::exists(path))
        return false;
    const auto failure = catchFailure([this, &path] { resend(path); });
    if (failure)
        onResendFailed(*failure);
    else
        m_resent.insert(path);
    return !failure;
}

void RecordQueue::endResend(const QString &path, const RecordOutcome &outcome)
{
    if (outcome.failure)
        onResendFailed(*outcome.failure);
    m_resent.remove(path);
    if (m_pass)
        m_pass->noteEnd(outcome.hasResponse);
}

/** Tells nobody, since nobody waits: the record stays for a later pass. */
void RecordQueue::onResendFailed(const Failure &failure)
{
    logResendFailure(failure);
    Q_EMIT retryWanted(resendRetry);
}

void RecordQueue::onPassFinished()
{
    m_pass->deleteLater();
    m_pass.clear();
    Q_EMIT passFinished();
}

bool RecordQueue::complete(const QString &path, SpoolRemover::Sync sync)
{
    if (path.isEmpty())
        return true; // the record never was on disk
    const auto failure = m_remover.remove(path, sync);
    if (!failure)
        return true;
    const NotificationHandle notification(new Notification(
        Notification::ERR, tr("FATAL ERROR"), logRemovalFailure(*failure), 0, false, true));
    Q_EMIT fatalStop();
    return false;
}
