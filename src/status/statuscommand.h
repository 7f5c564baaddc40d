// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/**
 * Prints how the kiosk with this runtime folder does, as "text", "json" or "prometheus". Returns
 * the exit status: 0 healthy, 2 degraded, 3 failing, 4 not running; 1 if it cannot be told.
 */
[[nodiscard]] int runStatusCommand(const QString &folder, const QString &format);
