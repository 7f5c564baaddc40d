// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/spoolpass.h"

#include "spool/spool.h"

#include <QDebug>

#include <utility>

SpoolPass::SpoolPass(const QString &folder, Send send, QObject *parent)
    : QObject(parent)
    , m_files(folder, Spool::recordFilter)
    , m_send(std::move(send))
{
}

void SpoolPass::proceed()
{
    if (m_isScheduled || m_isOver)
        return;
    m_isScheduled = true;
    QMetaObject::invokeMethod(this, &SpoolPass::step, Qt::QueuedConnection);
}

void SpoolPass::setPaused(bool paused)
{
    m_isPaused = paused;
    if (!paused)
        proceed();
}

void SpoolPass::noteEnd(bool hadResponse)
{
    --m_inFlight;
    m_misses = hadResponse ? 0 : m_misses + 1;
    if (m_misses == maxMisses && !m_hasGivenUp) {
        m_hasGivenUp = true;
        qInfo() << "The service does not answer, the rest of the queue waits.";
    }
    proceed();
}

void SpoolPass::step()
{
    m_isScheduled = false;
    if (m_hasGivenUp || !m_files.hasNext()) {
        m_isOver = m_inFlight == 0;
        if (m_isOver)
            Q_EMIT finished();
        return;
    }
    if (m_isPaused || m_inFlight == maxInFlight)
        return;
    if (m_send(m_files.next()))
        ++m_inFlight;
    proceed();
}
