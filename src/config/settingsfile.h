// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <utility>

/**
 * Makes the settings file @p path readable by its owner alone, since it holds a secret.
 *
 * Wider rights are taken away with one log line; a missing folder is created with mode 0700. A
 * failure is logged, and the program goes on.
 */
void protectSettingsFile(const QString &path);

/** Inode and modification time of a settings file: they change whenever QSettings replaces it. */
[[nodiscard]] std::pair<quint64, qint64> settingsFileIdentity(const QString &path);
