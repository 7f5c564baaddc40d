// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QSettings>
#include <QString>
#include <QStringList>

/** The file of this program, or that of all programs of the organisation; it need not exist. */
[[nodiscard]] QString settingsFileName(QSettings::Scope scope, const QString &application = {});
/** The existing files behind the user's own, which supply missing values; the first wins. */
[[nodiscard]] QStringList fallbackSettingsFiles();

/**
 * Makes the settings file @p path readable by its owner only, since it holds a secret.
 *
 * Removes wider permissions with one log line; creates a missing folder with mode 0700. A failure
 * is only logged.
 */
void protectSettingsFile(const QString &path);

/**
 * Removes each line of the settings file @p path that holds a serialised value of a type that no
 * setting has, with a log line. Qt ends the program when it reads a damaged one of such a type.
 * Returns true if the file has changed.
 */
bool removeDamagedValues(const QString &path);
