// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <netdb.h>
#include <unistd.h>

/** Preloaded into a program: a name server that never answers. */
extern "C" int getaddrinfo(const char *, const char *, const addrinfo *, addrinfo **)
{
    while (true)
        pause();
}
