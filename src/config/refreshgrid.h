// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTime>

#include <chrono>

/**
 * Time from @p now to the next point of the refresh grid.
 *
 * The points lie half a second after each multiple of @p interval, counted from midnight: all
 * screens of a house refresh at the same moments, and the services can prepare. A point less than
 * 10 s ahead is skipped, as the screen may just have refreshed. Midnight is always a point and
 * never skipped: the schedule of the new day must not come later.
 */
[[nodiscard]] std::chrono::milliseconds timeToNextRefresh(QTime now,
                                                          std::chrono::milliseconds interval);
