// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QVector>

class Config;

/** The value of a setting that is in force, for an operator who asks why a screen behaves so. */
struct EffectiveSetting
{
    QString key;
    QString shown; ///< the value, with secrets masked
    QString origin; ///< see Config::origin()
};

/** @p text with the user info of each address masked, even if a password breaks the address. */
[[nodiscard]] QString maskPasswords(QString text);

/** All settings, in the order of their keys. */
[[nodiscard]] QVector<EffectiveSetting> effectiveSettings(const Config &config);
