// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/clockwatch.h"

#include <QDateTime>
#include <QDebug>

#include <chrono>

using namespace std::chrono_literals;

ClockWatch::ClockWatch(QObject *parent)
    : QObject(parent)
    , m_minute(this)
{
    m_minute.setTimerType(Qt::PreciseTimer);
    connect(&m_minute, &QTimer::timeout, this, &ClockWatch::onMinute);
    m_minute.start(60s);
}

void ClockWatch::onMinute()
{
    const bool isZoneNew = m_zone.reloadIfReplaced();
    if (isZoneNew)
        qInfo() << "The time zone has changed, it is now" << QDateTime::currentDateTime();
    Q_EMIT mustLook(isZoneNew);
}
