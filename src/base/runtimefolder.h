// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/**
 * The folder for files that end with the session or with the service: the one that systemd has made
 * for the service, also for a program that the service's user starts by hand; else "lumenboard" in
 * that of the user's session. Creates it on first use, for
 * its owner only; where that fails, so does what is done in it. Any thread.
 */
[[nodiscard]] QString runtimeFolder();
