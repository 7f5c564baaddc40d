// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/refreshgrid.h"

#include <algorithm>

using namespace std::chrono_literals;

std::chrono::milliseconds timeToNextRefresh(QTime now, std::chrono::milliseconds interval)
{
    constexpr auto pastGridPoint = 500ms;
    constexpr auto soonest = 9999ms;

    const std::chrono::milliseconds sinceMidnight(now.msecsSinceStartOfDay());
    const auto remaining = interval - sinceMidnight % interval + pastGridPoint;
    const auto wait = remaining > soonest ? remaining : remaining + interval;
    return std::min(wait, 24h - sinceMidnight + pastGridPoint);
}
