// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QuickWindow;

/** Display and touch panel, which may come late, change or go while the program runs. */
namespace screens {

/**
 * Keeps a full-screen @p window as large as its screen, also when another mode is set or the
 * display is plugged in later: without a window manager nobody else does.
 */
void follow(QuickWindow &window);

/** Logs the touch panels that the window system offers, at the first call and when they change. */
void logTouchPanels();

} // namespace screens
