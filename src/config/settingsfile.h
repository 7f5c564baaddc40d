// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/**
 * Makes the settings file @p path readable by its owner alone, since it holds a secret.
 *
 * A file with wider rights is tightened with one log line; a missing folder is made with mode
 * 0700. What can not be done is logged, and the program goes on.
 */
void protectSettingsFile(const QString &path);
