// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

#include <optional>

/**
 * Handles the options that need no display: --help, --version and --check. Returns the exit status,
 * or nothing if the kiosk is to start. Creates an application object only for these options.
 */
[[nodiscard]] std::optional<int> runCommandLine(int &argc, char *argv[]);

/** False, with a message, if an argument is unknown. Call it after Qt has removed its own. */
[[nodiscard]] bool acceptArguments(const QStringList &arguments);
