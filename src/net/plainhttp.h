// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/**
 * Warns of each address to which tokens or records would go unprotected, once per address and
 * process. For the GUI thread: call it at start and after each change of the configuration.
 */
void warnOfPlainHttp();
