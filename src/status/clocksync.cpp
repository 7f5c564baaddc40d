// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "status/clocksync.h"

#include <sys/timex.h>
#include <unistd.h>

std::optional<bool> isClockSynchronised()
{
    struct timex clock
    {
    };
    if (adjtimex(&clock) >= 0) // changes nothing without modes
        return (clock.status & STA_UNSYNC) == 0;
    // Of systemd-timesyncd; another time service leaves no such file.
    if (access("/run/systemd/timesync/synchronized", F_OK) == 0)
        return true;
    return {};
}
