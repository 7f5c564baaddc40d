// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/scheduleage.h"

#include "config/config.h"

#include <QLocale>

#include <chrono>

using namespace std::chrono_literals;

ScheduleAge::ScheduleAge(QObject *parent)
    : QObject(parent)
    , m_expiry(this)
{
    m_expiry.setObjectName(QStringLiteral("scheduleExpiry"));
    m_expiry.setSingleShot(true);
    connect(&m_expiry, &QTimer::timeout, this, [this] {
        m_expired = true;
        Q_EMIT asOfChanged();
    });
}

QString ScheduleAge::asOf() const
{
    if (!m_expired)
        return {};
    const QLocale locale;
    const QString time = locale.toString(m_lastGood.time(), QLocale::ShortFormat);
    if (m_lastGood.date() == QDate::currentDate())
        //: Small line below a schedule that could not be refreshed; %1 is a time such as 10:05
        return tr("As of %1").arg(time);
    //: The same for a schedule of an earlier day; %1 is a date, %2 a time
    return tr("As of %1, %2").arg(locale.toString(m_lastGood.date(), QLocale::ShortFormat), time);
}

void ScheduleAge::onReadSucceeded(const QDateTime &when)
{
    // Gives the second refresh time to finish before it counts as missed.
    constexpr auto responseTime = 5s;

    m_lastGood = when;
    m_expiry.start(2 * std::chrono::seconds(Config::instance()->refreshInterval()) + responseTime);
    if (!m_expired)
        return;
    m_expired = false;
    Q_EMIT asOfChanged();
}

void ScheduleAge::onReadFailed()
{
    if (m_expired)
        Q_EMIT asOfChanged();
}
