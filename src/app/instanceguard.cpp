// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/instanceguard.h"

#include "api/lbapi.h"

#include <QDebug>

using namespace std::chrono_literals;

InstanceGuard::InstanceGuard(QObject *parent)
    : QObject(parent)
    , m_timer(this)
    , m_isFirst(m_lock.take())
{
    if (m_isFirst)
        return;
    const auto holder = InstanceLock::holder(m_lock.path());
    const QString process = holder ? QStringLiteral(" as process %1").arg(*holder) : QString();
    qWarning().noquote().nospace()
        << "Another kiosk of this user runs" << process << ", reading no cards until it ends.";
    LBAPI::instance()->cardReadiness()->setWaiting(true);
    connect(&m_timer, &QTimer::timeout, this, &InstanceGuard::tryAgain);
    m_timer.start(1s);
}

void InstanceGuard::tryAgain()
{
    if (!m_lock.take())
        return;
    m_isFirst = true;
    m_timer.stop();
    qInfo() << "The other kiosk has ended, taking over.";
    LBAPI::instance()->cardReadiness()->setWaiting(false);
    Q_EMIT becameFirst();
}
