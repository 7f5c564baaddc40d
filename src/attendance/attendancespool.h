// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "spool/spool.h"

/** The spool of attendance records. */
[[nodiscard]] Spool attendanceSpool();
