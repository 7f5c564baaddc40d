// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "attendance/attendancespool.h"

#include "config/keys.h"

Spool attendanceSpool()
{
    return Spool({ "LB_ATTENDANCE_SPOOL_DIR", keys::attendanceSpoolDir,
                   QStringLiteral("spool/attendance") });
}
