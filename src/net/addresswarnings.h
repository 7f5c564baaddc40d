// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/**
 * Warns once about each address that is neither http nor https, and so is not used, and about each
 * to which tokens or records would be sent without TLS. Call it in the GUI thread, at start and
 * after each change of the configuration.
 */
void warnOfAddresses();
