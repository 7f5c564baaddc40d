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
    QString problem; ///< why the stored value is not used and which one is; empty if it is used
};

/** Masks the user info of each address in @p text, even if a password makes the address invalid. */
[[nodiscard]] QString maskPasswords(QString text);

/** All settings, in the order of their keys. */
[[nodiscard]] QVector<EffectiveSetting> effectiveSettings(const Config &config);

/**
 * Warns once of each value in the settings that should be a number and is not. Call it in the GUI
 * thread, at start and after each change of the configuration.
 */
void warnOfSettings();
