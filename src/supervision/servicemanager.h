// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <chrono>
#include <optional>

/** Messages to systemd, see sd_notify(3). Without a service manager they go nowhere. */
namespace servicemanager {

/** The screen shows its content. */
void ready();
/** @p text for technicians, as "systemctl status" shows it. */
void status(const QString &text);
/** The program ends as it was told to. */
void stopping();

/** A sign of life. */
void alive();
/** Time within which the manager wants a sign of life, or none if it wants none. */
[[nodiscard]] std::optional<std::chrono::milliseconds> lifeSignLimit();

} // namespace servicemanager
