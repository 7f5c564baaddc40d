// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QuickWindow;

/**
 * Reports to the service manager: ready with the first frame of @p window, alive while the GUI
 * thread, the render thread and the attendance worker answer, and in words what the screen shows.
 * The same signs of life go to KioskStatus, also without a service manager. Call it for each new
 * window. GUI thread.
 */
void reportToServiceManager(QuickWindow &window);
