// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTime>

#include <chrono>

/**
 * Time from @p now to the next point of the refresh grid.
 *
 * The points lie half a second after each whole multiple of @p interval counted from midnight, so
 * that all screens of a house ask at the same moments and the services can prepare. A point less
 * than 10 s ahead is skipped: whoever has just refreshed need not do so again.
 */
[[nodiscard]] std::chrono::milliseconds timeToNextRefresh(QTime now,
                                                          std::chrono::milliseconds interval);
