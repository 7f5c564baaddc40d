// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/**
 * Warns once about each address to which tokens or records would be sent unprotected. Call it in
 * the GUI thread, at start and after each change of the configuration.
 */
void warnOfPlainHttp();
