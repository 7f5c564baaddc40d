// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

#include <optional>

/**
 * Serves the options that need no display: --help, --version and --check. Returns the exit status,
 * or nothing when the kiosk is to be started. Makes the application object that they need, for
 * good.
 */
[[nodiscard]] std::optional<int> runCommandLine(int &argc, char *argv[]);

/** Whether the kiosk understands @p arguments (Qt has taken its own by now); complains if not. */
[[nodiscard]] bool acceptArguments(const QStringList &arguments);
