// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <netdb.h>
#include <unistd.h>

/** For preloading: every name look-up hangs forever. */
extern "C" int getaddrinfo(const char *, const char *, const addrinfo *, addrinfo **)
{
    while (true)
        pause();
}
