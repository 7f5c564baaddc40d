// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/spoolgate.h"

#include <QDebug>

using namespace std::chrono_literals;

SpoolGate::SpoolGate(const Spool &spool, QObject *parent)
    : QObject(parent)
    , m_spool(spool)
    , m_timer(this)
{
    m_timer.setInterval(10s);
    connect(&m_timer, &QTimer::timeout, this, &SpoolGate::look);
    look();
}

bool SpoolGate::look()
{
    const bool wasOpen = m_isOpen;
    m_isOpen = m_spool.canBeUsed();
    if (wasOpen && m_isOpen)
        return true;
    if (wasOpen) {
        qCritical() << "Spool directory" << m_spool.folder()
                    << "is not writable. No record is taken or sent until it is.";
        m_timer.start();
    } else if (m_isOpen) {
        qInfo() << "Spool directory" << m_spool.folder() << "can be used again.";
        m_timer.stop();
    }
    Q_EMIT looked();
    return m_isOpen;
}
