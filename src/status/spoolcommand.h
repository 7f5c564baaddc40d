// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

/**
 * Runs "--spool" for the kiosk with this runtime folder: "list" (also without arguments), "show
 * NAME" or "export FILE". Changes nothing in the spools. Returns the exit status.
 */
[[nodiscard]] int runSpoolCommand(const QString &folder, const QStringList &arguments);
