// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/recordbackoff.h"

#include <QFile>

#include <algorithm>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::seconds firstWait = 60s;
constexpr std::chrono::seconds maxWait = 6h;

} // namespace

bool RecordBackOff::isDue(const QString &path) const
{
    const auto wait = m_waits.constFind(path);
    return wait == m_waits.constEnd() || wait->end.hasExpired();
}

void RecordBackOff::postpone(const QString &path)
{
    wait(path, std::clamp(m_waits.value(path).length * 2, firstWait, maxWait));
}

void RecordBackOff::forget(const QString &path)
{
    m_waits.remove(path);
}

void RecordBackOff::shelve(const QString &path)
{
    wait(path, maxWait);
}

void RecordBackOff::clear()
{
    m_waits.clear();
}

void RecordBackOff::forgetGone()
{
    for (auto wait = m_waits.begin(); wait != m_waits.end();) {
        const bool isGone = wait->end.hasExpired() && !QFile::exists(wait.key());
        wait = isGone ? m_waits.erase(wait) : std::next(wait);
    }
}

std::optional<std::chrono::milliseconds> RecordBackOff::untilNextDue() const
{
    if (m_waits.isEmpty())
        return {};
    const auto next = std::min_element(m_waits.begin(), m_waits.end(),
                                       [](const Wait &a, const Wait &b) { return a.end < b.end; });
    return std::chrono::milliseconds(next->end.remainingTime());
}

void RecordBackOff::wait(const QString &path, std::chrono::seconds length)
{
    m_waits.insert(path, { length, QDeadlineTimer(length) });
}
