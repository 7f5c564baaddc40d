// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class CheckReport;

namespace localchecks {

/** Prints the connected displays and touch panels, as the kernel and udev know them. */
void checkPanel(CheckReport &report);

} // namespace localchecks
