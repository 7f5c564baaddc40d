// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QVector>

class Config;

/** The value of a setting in force, to explain a screen's behaviour to an operator. */
struct EffectiveSetting
{
    QString key;
    QString shown; ///< the value, with secrets masked
    QString origin; ///< see Config::origin()
};

/** Masks the user info of each address in @p text, even if a password makes the address invalid. */
[[nodiscard]] QString maskPasswords(QString text);

/** All settings, in the order of their keys. */
[[nodiscard]] QVector<EffectiveSetting> effectiveSettings(const Config &config);
