// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/**
 * The last resort when the program shall end but something blocks: a few seconds after
 * limitTimeToEnd() it logs what it waits for and ends by force.
 */
namespace exitwatchdog {

/** Starts the time limit; later calls change nothing. May be called in a signal handler. */
void limitTimeToEnd();
/** Cancels the time limit. */
void cancel();

/** Names what the end waits for while this object exists, otherwise it is the GUI thread. */
class Waiting
{
public:
    /** @p name is a literal. */
    explicit Waiting(const char *name);
    Waiting(const Waiting &) = delete;
    Waiting &operator=(const Waiting &) = delete;
    ~Waiting();
};

} // namespace exitwatchdog
