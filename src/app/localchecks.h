// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

class CheckReport;
class ScratchSettings;
class Spool;

/** The checks of the machine itself. They need no network, change nothing and end at once. */
namespace localchecks {

/** Prints all settings in force, and whether their files can be read and written. */
void checkSettings(CheckReport &report, const ScratchSettings &settings);
void checkTls(CheckReport &report);
/** Prints the serial ports, and which of them the kiosk would open. */
void checkReader(CheckReport &report);
/** Also good: a folder that does not exist but can be created. */
void checkSpool(CheckReport &report, const QString &name, const Spool &spool);

} // namespace localchecks
