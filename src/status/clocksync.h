// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>

/**
 * True if the machine's clock follows a time server; nothing if that cannot be known. A service
 * that must not set the clock may not ask the kernel either.
 */
[[nodiscard]] std::optional<bool> isClockSynchronised();
