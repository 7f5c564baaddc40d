// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class InputEventMonitor;
class QuickWindow;
class TerminationSignals;

/**
 * Builds the window, runs the event loop and destroys the window, and repeats this while the window
 * requests a rebuild. Returns the exit code of the last event loop.
 */
[[nodiscard]] int runWindowPasses(const TerminationSignals &termination);

/** Connects @p window to settings, timers, input and engine. */
void wireWindow(QuickWindow &window, InputEventMonitor &monitor);
