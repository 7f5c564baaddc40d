// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QVector>

class Config;

/** A setting as it is in force, for a person who asks why a screen behaves as it does. */
struct EffectiveSetting
{
    QString key;
    QString shown; ///< the value; secrets masked
    QString origin; ///< "user", "machine-wide" or "default"
};

/** @p text with the user info of an address in it masked, also where a password broke the address.
 */
[[nodiscard]] QString maskPasswords(QString text);

/** All settings, in the order of the keys. */
[[nodiscard]] QVector<EffectiveSetting> effectiveSettings(const Config &config);
