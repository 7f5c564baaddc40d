// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <cstdlib>
#include <unistd.h>

/** For preloading: the syncs of records, or those of settings and locks, take this long. */
extern "C" int fsync(int)
{
    return usleep(static_cast<useconds_t>(std::atoi(getenv("SYNC_MS"))) * 1000);
}

extern "C" int fdatasync(int)
{
    return usleep(static_cast<useconds_t>(std::atoi(getenv("DATA_SYNC_MS"))) * 1000);
}
