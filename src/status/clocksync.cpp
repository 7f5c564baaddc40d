// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "status/clocksync.h"

#include <sys/timex.h>

std::optional<bool> isClockSynchronised()
{
    struct timex clock
    {
    };
    if (adjtimex(&clock) < 0) // changes nothing without modes
        return {};
    return (clock.status & STA_UNSYNC) == 0;
}
