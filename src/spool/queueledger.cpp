// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/queueledger.h"

#include "base/failure.h"
#include "base/loglimit.h"
#include "spool/spool.h"

#include <QFileInfo>

using namespace std::chrono_literals;

namespace {

QString nameOf(const QString &path)
{
    return QFileInfo(path).fileName();
}

} // namespace

QueueLedger::QueueLedger(const Spool &spool, QObject *parent)
    : QObject(parent)
    , m_spool(spool)
    , m_timer(this)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(1s);
    connect(&m_timer, &QTimer::timeout, this, &QueueLedger::publish);
}

void QueueLedger::onSaved(const QString &path)
{
    schedule();
    if (m_mustCount)
        return;
    ++*m_status.waiting;
    if (m_oldest.isEmpty()) {
        m_oldest = nameOf(path);
        m_status.oldest = Spool::timeOf(m_oldest);
    }
}

void QueueLedger::onGone(const QString &path)
{
    schedule();
    const QString name = nameOf(path);
    m_failed.remove(name);
    if (m_mustCount)
        return;
    if (*m_status.waiting == 0) { // somebody has cleared the folder
        m_mustCount = true;
        return;
    }
    --*m_status.waiting;
    m_mustCount = name == m_oldest && *m_status.waiting != 0;
    if (name == m_oldest) {
        m_oldest.clear();
        m_status.oldest = {};
    }
}

void QueueLedger::onAccepted()
{
    schedule();
    ++m_status.sent;
    m_status.lastSuccess = QDateTime::currentDateTimeUtc();
}

void QueueLedger::onFailed(const QString &path, const RecordOutcome &outcome)
{
    schedule();
    if (outcome.isRefusal())
        ++m_status.refused;
    m_status.lastFailure = QDateTime::currentDateTimeUtc();
    m_status.lastReason = logExcerpt(outcome.shortReason());
    const QString name = nameOf(path);
    if (name.isEmpty() || (m_failed.size() >= maxFailed && !m_failed.contains(name)))
        return;
    FailedRecord &record = m_failed[name];
    record = { name, record.tries + 1, m_status.lastFailure, m_status.lastReason };
}

void QueueLedger::recount()
{
    m_mustCount = true;
    schedule();
}

void QueueLedger::schedule()
{
    if (!m_timer.isActive())
        m_timer.start();
}

void QueueLedger::publish()
{
    if (m_mustCount)
        count();
    m_status.folder = m_spool.folder();
    m_status.failed.clear();
    for (const FailedRecord &record : std::as_const(m_failed))
        m_status.failed.append(record);
    Q_EMIT changed(m_status);
}

/** Also forgets the failed records that somebody else has removed. */
void QueueLedger::count()
{
    const auto known = std::exchange(m_failed, {});
    m_oldest.clear();
    m_status.oldest = {};
    m_status.waiting = 0;
    m_spool.visit([this, &known](const QString &name) {
        ++*m_status.waiting;
        const auto failed = known.constFind(name);
        if (failed != known.constEnd())
            m_failed.insert(name, *failed);
        const QDateTime time = Spool::timeOf(name);
        const bool isOlder = m_oldest.isEmpty() || time < m_status.oldest
            || (time == m_status.oldest && name < m_oldest); // of the same millisecond
        if (time.isValid() && isOlder) {
            m_oldest = name;
            m_status.oldest = time;
        }
    });
    m_mustCount = false;
}
