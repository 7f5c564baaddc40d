// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/**
 * Warns once about each address of a service that is not used since it is neither http nor https,
 * or to which tokens or records would be sent unprotected. Call it in the GUI thread, at start and
 * after each change of the configuration.
 */
void warnOfAddresses();
