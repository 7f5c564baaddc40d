// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "supervision/heartbeat.h"

#include <QDebug>

#include <algorithm>
#include <utility>

Heartbeat::Heartbeat(std::chrono::milliseconds interval, std::function<void()> beat)
    : m_beat(std::move(beat))
    , m_timer(this)
{
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &Heartbeat::tick);
}

void Heartbeat::watch(const QString &name, Question question)
{
    const auto known = std::find_if(m_parts.begin(), m_parts.end(),
                                    [&name](const Part &part) { return part.name == name; });
    if (known == m_parts.end())
        m_parts.push_back({ name, std::move(question) });
    else
        known->question = std::move(question);
}

void Heartbeat::start()
{
    m_timer.start();
    tick();
}

void Heartbeat::tick()
{
    if (!m_unanswered.isEmpty()) {
        if (!std::exchange(m_isSilenceLogged, true))
            qCritical() << "No sign of life: no answer from" << m_unanswered;
        Q_EMIT missed();
        return;
    }
    if (std::exchange(m_isSilenceLogged, false))
        qWarning() << "All parts answer again.";
    m_beat();
    for (const Part &part : m_parts)
        ask(part);
}

void Heartbeat::ask(const Part &part)
{
    m_unanswered.append(part.name);
    part.question([this, name = part.name] {
        QMetaObject::invokeMethod(
            this, [this, name] { m_unanswered.removeOne(name); }, Qt::QueuedConnection);
    });
}
