// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

class CheckReport;
class ScratchSettings;
class Spool;

/** The checks of the machine itself. They need no network, change nothing and return at once. */
namespace localchecks {

/** Prints all settings in force. Bad if their files cannot be read or written. */
void checkSettings(CheckReport &report, const ScratchSettings &settings);
void checkTls(CheckReport &report);
/** Tells whether a kiosk runs: a second one would read no cards. */
void checkInstance(CheckReport &report);
/** Prints the serial ports, and which of them the kiosk would open. */
void checkReader(CheckReport &report);
/** Good if the folder can be written and listed, or can still be created. */
void checkSpool(CheckReport &report, const QString &name, const Spool &spool);

} // namespace localchecks
