// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class InputEventMonitor;
class QuickWindow;
class TerminationSignals;

/**
 * Builds the window, runs the event loop and tears the window down, again for as long as the
 * window asks to be rebuilt. Returns the exit code of the last event loop.
 */
[[nodiscard]] int runWindowPasses(const TerminationSignals &termination);

/** Connects @p window with settings, timers, input and engine. */
void wireWindow(QuickWindow &window, InputEventMonitor &monitor);
